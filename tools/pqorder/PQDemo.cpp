// demo: a short tour of the library's main jobs, each step run by the same
// command that the command line runs.

#include <functional>
#include <sstream>

#include "PQOrderTool.h"

namespace pqorder {
namespace {

// Runs `command` on `input`, and shows the command line and what it printed.
void step(Streams io, std::string_view title, std::string_view commandLine,
          const std::function<Status(Streams)>& command, const std::string& input = {}) {
    std::istringstream in(input);
    std::ostringstream out;
    (void)command({in, out, io.err});
    io.out << title << "\n  $ " << commandLine << '\n';
    std::istringstream printed(out.str());
    for (std::string line; std::getline(printed, line);) {
        io.out << "  " << line << '\n';
    }
    io.out << '\n';
}

std::string rendered(const RenderOptions& options, Streams io) {
    std::istringstream none;
    std::ostringstream out;
    (void)render(options, {none, out, io.err});
    std::string text = out.str();
    text.pop_back(); // its line feed
    return text;
}

} // namespace

Status demo(Streams io) {
    io.out << "pqorder demo: orders and checks, by the library's own code.\n\n";

    const RenderOptions order{"log", {"level=3", "text=a=b & c//d"}, false};
    step(io, "1. An order: action 'log' and two pieces, rendered as order text.",
         "pqorder render log level=3 'text=a=b & c//d'",
         [&](Streams s) { return render(order, s); });

    const std::string text = rendered(order, io);
    step(io, "2. The same text parsed back: '=', '&' and '//' come back from their tokens.",
         "pqorder parse '" + text + "'", [&](Streams s) {
             return parse({text, false, false}, s);
         });

    const RenderOptions json{
        "vordaApplicationResponse",
        {"status=ok", R"(user:={"name":"Ada \"A\"","admin":true,"tags":["x","y//z"]})"},
        true};
    const std::string jsonText = rendered(json, io);
    step(
        io, "3. A JSON order: the JSON travels escaped in its content piece.",
        R"(pqorder render --json vordaApplicationResponse status=ok 'user:={"name":"Ada \"A\"","admin":true,"tags":["x","y//z"]}')",
        [&](Streams s) { return render(json, s); });
    step(io, "4. Read back as JSON, the content decoded.",
         "pqorder parse --json '" + jsonText + "'", [&](Streams s) {
             return parse({jsonText, true, false}, s);
         });

    step(
        io, "5. A password against the default policy (read from standard input).",
        "echo 'Abcdef g1' | pqorder password", [](Streams s) { return password({}, s); },
        "Abcdef g1\n");
    step(
        io, "6. One without an upper-case letter.", "echo 'abcdefg1' | pqorder password",
        [](Streams s) { return password({}, s); }, "abcdefg1\n");

    step(io, "7. A card number: its checksum, brand and masked form.",
         "pqorder card 4111111111111111",
         [](Streams s) { return card(std::string("4111111111111111"), s); });
    step(io, "8. One digit off: the checksum fails, the brand stays.",
         "pqorder card 4111111111111112",
         [](Streams s) { return card(std::string("4111111111111112"), s); });
    return Status::ok;
}

} // namespace pqorder
