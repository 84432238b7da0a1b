// pqorder: renders, parses and explains order text, and checks passwords and
// card numbers, with the library's own code. Run `pqorder --help`.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <utility>
#include <vector>

#include "PQOrderTool.h"
#include "PQPasswordRules.h"
#include "PQUtils/PQUtils.h"

namespace {

using namespace pqorder;

// Starts the library for the run and frees its tables at the end.
class Library {
public:
    Library() { PQ_UTILS::PQInit::init(); }
    ~Library() { PQ_UTILS::PQInit::clean(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

int fail(const std::string& message) {
    std::cerr << "pqorder: " << message << '\n';
    return static_cast<int>(Status::usage);
}

void addPolicyOptions(CLI::App& command, PasswordPolicy& policy) {
    for (const PasswordLimit& limit : passwordLimits()) {
        command.add_option(std::string("--") + limit.name, policy.*limit.option,
                           "a negative value is no limit");
    }
    command.add_option("--forbid", policy.forbid, "characters (bytes) the password must not hold");
}

// What the command line sets, for whichever command it names.
struct Arguments {
    RenderOptions render;
    ParseOptions parse;
    std::string key;
    std::optional<std::string> text;
    std::optional<std::string> query;
    PasswordPolicy policy;
};

// A command: its name and help, the arguments it declares, and what it runs.
struct Command {
    const char* name;
    const char* help;
    void (*declare)(CLI::App& command, Arguments& arguments);
    Status (*run)(const Arguments& arguments, Streams io);
};

// The optional text argument that most commands read, else their input.
void declareText(CLI::App& command, Arguments& arguments, const char* help) {
    command.add_option("text", arguments.text, help);
}

constexpr Command kCommands[] = {
    {"render", "the order text of an action and pieces",
     [](CLI::App& command, Arguments& arguments) {
         command.add_option("action", arguments.render.action, "action name or value")->required();
         command.add_option("pieces", arguments.render.pieces,
                            "KEY=VALUE, or with --json also KEY:=JSON (any JSON value)");
         command.add_flag("--json", arguments.render.json, "a JSON order: pieces become members");
     },
     [](const Arguments& arguments, Streams io) { return render(arguments.render, io); }},
    {"parse", "the pieces of order text (the argument, or one order per input line)",
     [](CLI::App& command, Arguments& arguments) {
         command.add_option("text", arguments.parse.text, "order text");
         command.add_flag("--json", arguments.parse.json, "one JSON object per order");
         command.add_flag("--raw", arguments.parse.raw, "keep the escape tokens");
     },
     [](const Arguments& arguments, Streams io) { return parse(arguments.parse, io); }},
    {"get", "the value of the first piece with a key",
     [](CLI::App& command, Arguments& arguments) {
         command.add_option("key", arguments.key, "piece key")->required();
         declareText(command, arguments, "order text (else one order per input line)");
     },
     [](const Arguments& arguments, Streams io) { return get(arguments.key, arguments.text, io); }},
    {"actions", "the action table, or one name <-> value look-up",
     [](CLI::App& command, Arguments& arguments) {
         command.add_option("query", arguments.query, "an action name or value");
     },
     [](const Arguments& arguments, Streams io) { return actions(arguments.query, io); }},
    {"password", "checks the password on standard input against the policy",
     [](CLI::App& command, Arguments& arguments) { addPolicyOptions(command, arguments.policy); },
     [](const Arguments& arguments, Streams io) { return password(arguments.policy, io); }},
    {"card", "checksum, brand and masked form of a card number (else one per input line)",
     [](CLI::App& command, Arguments& arguments) {
         command.add_option("number", arguments.text, "card number");
     },
     [](const Arguments& arguments, Streams io) { return card(arguments.text, io); }},
    {"base64", "Base64 of the argument or of the input",
     [](CLI::App& command, Arguments& arguments) {
         declareText(command, arguments, "text to encode");
     },
     [](const Arguments& arguments, Streams io) { return base64(arguments.text, io); }},
    {"urldecode", "percent-decodes the argument or each input line",
     [](CLI::App& command, Arguments& arguments) {
         declareText(command, arguments, "text to decode");
     },
     [](const Arguments& arguments, Streams io) { return urldecode(arguments.text, io); }},
    {"demo", "a short tour of what the library does", [](CLI::App&, Arguments&) {},
     [](const Arguments&, Streams io) { return demo(io); }},
};

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Renders, parses and explains order text; checks passwords and card numbers.",
                 "pqorder"};
    app.set_version_flag("--version", "pqorder " PQORDER_VERSION);
    app.require_subcommand(1);
    app.fallthrough();
    bool verbose = false;
    app.add_flag("--verbose", verbose, "show the library's log on standard error");

    Arguments arguments;
    std::vector<std::pair<const CLI::App*, const Command*>> declared;
    for (const Command& command : kCommands) {
        CLI::App* const subcommand = app.add_subcommand(command.name, command.help);
        command.declare(*subcommand, arguments);
        declared.emplace_back(subcommand, &command);
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& success) {
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        return fail(std::string(error.what()) + " (see --help)");
    }

    const Streams io{std::cin, std::cout, std::cerr};
    try {
        routeLibraryLog(verbose);
        const Library library;
        const auto chosen = std::find_if(declared.begin(), declared.end(),
                                         [](const auto& entry) { return entry.first->parsed(); });
        const Status status =
            chosen == declared.end() ? Status::usage : chosen->second->run(arguments, io);
        std::cout.flush();
        return static_cast<int>(status);
    } catch (const UsageError& error) {
        return fail(error.what());
    } catch (const std::exception& error) {
        return fail(std::string("failed: ") + error.what());
    } catch (...) {
        return fail("failed");
    }
}
