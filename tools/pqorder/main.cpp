// pqorder: renders, parses and explains order text, and checks passwords and
// card numbers, with the library's own code. Run `pqorder --help`.

#include <CLI/CLI.hpp>
#include <iostream>

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

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Renders, parses and explains order text; checks passwords and card numbers.",
                 "pqorder"};
    app.set_version_flag("--version", "pqorder " PQORDER_VERSION);
    app.require_subcommand(1);
    app.fallthrough();
    bool verbose = false;
    app.add_flag("--verbose", verbose, "show the library's log on standard error");

    RenderOptions renderOptions;
    auto* renderCommand = app.add_subcommand("render", "the order text of an action and pieces");
    renderCommand->add_option("action", renderOptions.action, "action name or value")->required();
    renderCommand->add_option("pieces", renderOptions.pieces,
                              "KEY=VALUE, or with --json also KEY:=JSON (any JSON value)");
    renderCommand->add_flag("--json", renderOptions.json, "a JSON order: pieces become members");

    ParseOptions parseOptions;
    auto* parseCommand = app.add_subcommand(
        "parse", "the pieces of order text (the argument, or one order per input line)");
    parseCommand->add_option("text", parseOptions.text, "order text");
    parseCommand->add_flag("--json", parseOptions.json, "one JSON object per order");
    parseCommand->add_flag("--raw", parseOptions.raw, "keep the escape tokens");

    std::string key;
    std::optional<std::string> text;
    auto* getCommand = app.add_subcommand("get", "the value of the first piece with a key");
    getCommand->add_option("key", key, "piece key")->required();
    getCommand->add_option("text", text, "order text (else one order per input line)");

    std::optional<std::string> query;
    auto* actionsCommand =
        app.add_subcommand("actions", "the action table, or one name <-> value look-up");
    actionsCommand->add_option("query", query, "an action name or value");

    PasswordPolicy policy;
    auto* passwordCommand =
        app.add_subcommand("password", "checks the password on standard input against the policy");
    addPolicyOptions(*passwordCommand, policy);

    auto* cardCommand = app.add_subcommand(
        "card", "checksum, brand and masked form of a card number (else one per input line)");
    cardCommand->add_option("number", text, "card number");
    auto* base64Command = app.add_subcommand("base64", "Base64 of the argument or of the input");
    base64Command->add_option("text", text, "text to encode");
    auto* urldecodeCommand =
        app.add_subcommand("urldecode", "percent-decodes the argument or each input line");
    urldecodeCommand->add_option("text", text, "text to decode");
    auto* demoCommand = app.add_subcommand("demo", "a short tour of what the library does");

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& success) {
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        return fail(std::string(error.what()) + " (see --help)");
    }

    const Streams io{std::cin, std::cout, std::cerr};
    try {
        LibraryReports::route(verbose);
        const Library library;
        Status status = Status::ok;
        if (renderCommand->parsed()) {
            status = render(renderOptions, io);
        } else if (parseCommand->parsed()) {
            status = parse(parseOptions, io);
        } else if (getCommand->parsed()) {
            status = get(key, text, io);
        } else if (actionsCommand->parsed()) {
            status = actions(query, io);
        } else if (passwordCommand->parsed()) {
            status = password(policy, io);
        } else if (cardCommand->parsed()) {
            status = card(text, io);
        } else if (base64Command->parsed()) {
            status = base64(text, io);
        } else if (urldecodeCommand->parsed()) {
            status = urldecode(text, io);
        } else if (demoCommand->parsed()) {
            status = demo(io);
        }
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
