// pqorder as its users run it: the built binary, its exit status and its
// output.

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace {

struct Result {
    int status = -1;
    std::string out;
    std::string err;
    long peakKiB = 0; // the child's peak resident memory, as last seen
};

// The peak resident memory of a running process, 0 once it has gone.
long peakMemoryKiB(pid_t pid) {
    std::ifstream status(std::string("/proc/").append(std::to_string(pid)).append("/status"));
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmHWM:", 0) == 0) {
            return std::strtol(line.c_str() + 6, nullptr, 10);
        }
    }
    return 0;
}

// The command line that runs pqorder with `args`: through the emulator
// (PQORDER_EMULATOR, its words separated by spaces) in a cross build.
std::vector<std::string> commandOf(const std::vector<std::string>& args) {
    std::vector<std::string> words;
    std::istringstream emulator(PQORDER_EMULATOR);
    for (std::string word; emulator >> word;) {
        words.push_back(word);
    }
    words.emplace_back(PQORDER_PATH);
    words.insert(words.end(), args.begin(), args.end());
    return words;
}

// Runs pqorder with `args`, feeding `input` to its standard input while
// reading both outputs (so that a large output cannot block it).
Result pqorder(const std::vector<std::string>& args, const std::string& input = {},
               const std::vector<std::string>& environment = {}) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    if (pipe(in.data()) != 0 || pipe(out.data()) != 0 || pipe(err.data()) != 0) {
        ADD_FAILURE() << "pipe";
        return {};
    }
    std::vector<std::string> command = commandOf(args); // made before the fork
    const pid_t child = fork();
    if (child == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(err[1], 2);
        for (const int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) {
            close(fd);
        }
        for (const std::string& variable : environment) {
            putenv(const_cast<char*>(variable.c_str())); // the child execs at once
        }
        std::vector<char*> argv;
        argv.reserve(command.size() + 1);
        for (std::string& word : command) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);
        execvp(argv[0], argv.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    close(err[1]);
    // Never block on a write while the child waits for us to read.
    fcntl(in[1], F_SETFL, O_NONBLOCK);
    Result run;
    std::size_t written = 0;
    std::array<pollfd, 3> fds{{{out[0], POLLIN, 0}, {err[0], POLLIN, 0}, {in[1], POLLOUT, 0}}};
    if (input.empty()) {
        close(in[1]);
        fds[2].fd = -1;
    }
    std::array<char, 65536> buffer{};
    while (fds[0].fd >= 0 || fds[1].fd >= 0) {
        if (poll(fds.data(), fds.size(), -1) < 0 && errno != EINTR) {
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd >= 0 && fds[i].revents != 0) {
                const ssize_t n = read(fds[i].fd, buffer.data(), buffer.size());
                if (n <= 0) {
                    close(fds[i].fd);
                    fds[i].fd = -1;
                } else {
                    (i == 0 ? run.out : run.err).append(buffer.data(), static_cast<size_t>(n));
                    run.peakKiB = std::max(run.peakKiB, peakMemoryKiB(child));
                }
            }
        }
        if (fds[2].fd >= 0 && fds[2].revents != 0) {
            const ssize_t n = write(in[1], input.data() + written, input.size() - written);
            written += n > 0 ? static_cast<std::size_t>(n) : 0;
            if ((n < 0 && errno != EAGAIN) || written == input.size()) {
                close(in[1]);
                fds[2].fd = -1;
            }
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return run;
}

std::size_t linesOf(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

// The keys of a JSON text in the order a parser meets them, duplicates kept.
std::vector<std::string> keysOf(const std::string& json) {
    std::vector<std::string> keys;
    const auto parsed = nlohmann::json::parse(
        json, [&](int depth, nlohmann::json::parse_event_t event, nlohmann::json& parsed) {
            if (event == nlohmann::json::parse_event_t::key && depth == 1) {
                keys.push_back(parsed.get<std::string>());
            }
            return true;
        });
    EXPECT_FALSE(parsed.is_discarded());
    return keys;
}

} // namespace

TEST(PQOrderTool, CommandsStatusAndOutput) {
    struct Case {
        std::vector<std::string> args;
        std::string input;
        int status;
        std::string out; // the whole output, or a part of it after "~"
        std::string err; // a part of standard error
    };
    const Case cases[] = {
        {{"render", "log", "level=3", "text=a=b & c//d"},
         "",
         0,
         "action=log&level=3&text=a--equ--b --amp-- c--dbsl--d&//\n",
         ""},
        {{"render", "13", "k="}, "", 0, "action=askLogin&k=&//\n", ""},
        {{"render", "--json", "log", "s=\"q\"", R"(o:={"n":1.5,"b":[{"t":true}]})"},
         "",
         0,
         "action=log&content={\"s\":\"\\\"q\\\"\",\"o\":{\"n\":1.5,\"b\":[{\"t\":true}]}}&//\n",
         ""},
        {{"render", "--json", "log", "n:=1"}, "", 2, "", "can only be members of an object"},
        {{"render", "--json", "log", "n:={"}, "", 2, "", "is not JSON"},
        {{"render", "log", "novalue"}, "", 2, "", "'novalue' is not KEY=VALUE"},
        {{"render", "askLgin"}, "", 2, "", "did you mean 'askLogin'?"},
        {{"parse", "action=log&a=1&a=2&//"}, "", 0, "action  log\na       1\na       2\n", ""},
        {{"parse", "--raw", "action=log&t=x--amp--y&//"}, "", 0, "~t       x--amp--y\n", ""},
        {{"parse", "action=log&bad&t=x=y&ok=1&//"},
         "",
         1,
         "action  log\nok      1\n",
         "pqorder: element 2 \"bad\": not key=value, dropped\n"
         "pqorder: element 3 \"t=x=y\": not key=value, dropped\n"},
        {{"parse"},
         "action=a&k=1&//\r\n\naction=b&//\n",
         0,
         "action  a\nk       1\n\naction  b\n",
         ""},
        {{"get", "k", "action=a&k=x--equ--y&//"}, "", 0, "x=y\n", ""},
        {{"get", "k"}, "action=a&k=1&//\naction=b&//\n", 1, "1\n", "no piece 'k'"},
        {{"actions", "askLogin"}, "", 0, "13\n", ""},
        {{"actions", "13"}, "", 0, "askLogin\n", ""},
        {{"actions", "asklogin"}, "", 1, "", "did you mean 'askLogin'?"},
        {{"actions", "10"}, "", 1, "", "no action has the value 10"},
        {{"password"},
         "Abcdef g1\n",
         0,
         "valid\nholds  letters, digits, lower-case, upper-case, special\n",
         ""},
        {{"password"}, "abcdefg1", 1, "invalid\n  no upper-case letter\n~", ""},
        {{"password", "--max-length", "8", "--forbid", "#"},
         "Abcdefg1#\n",
         1,
         "invalid\n  more than 8 characters\n  a forbidden character\n~",
         ""},
        {{"password", "--min-length", "x"}, "", 2, "", "--min-length"},
        {{"password"}, "", 2, "", "no password on standard input"},
        {{"card", "378282246310005"},
         "",
         0,
         "luhn    valid\nbrand   PAYMENT_TYPE_AMEX\nmasked  XXXX XXXXXX 10005\n",
         ""},
        {{"card"},
         "4111111111111112\n99999\n",
         1,
         "luhn    invalid\nbrand   PAYMENT_TYPE_VISA\nmasked  XXXX XXXX XXXX 1112\n\n"
         "luhn    invalid\nbrand   none (stored as PAYMENT_TYPE_VISA)\n~",
         ""},
        {{"base64", "foobar"}, "", 0, "Zm9vYmFy\n", ""},
        {{"base64"}, std::string("\0\xFF", 2), 0, "AP8=\n", ""},
        {{"urldecode"}, "a%20b\n\n%2541+\n", 0, "a b\n\nA+\n", ""},
        {{"demo"}, "", 0, "~8. One digit off", ""},
        {{"--version"}, "", 0, "pqorder 0.1.0\n", ""},
        {{}, "", 2, "", "A subcommand is required"},
        {{"frobnicate"}, "", 2, "", "pqorder: "},
        {{"get"}, "", 2, "", "key is required"},
    };
    for (const Case& c : cases) {
        const std::string command = ::testing::PrintToString(c.args);
        const Result run = pqorder(c.args, c.input);
        EXPECT_EQ(run.status, c.status) << command << '\n' << run.err;
        if (!c.out.empty() && c.out.back() == '~') {
            EXPECT_EQ(run.out.substr(0, c.out.size() - 1), c.out.substr(0, c.out.size() - 1))
                << command;
        } else if (!c.out.empty() && c.out.front() == '~') {
            EXPECT_NE(run.out.find(c.out.substr(1)), std::string::npos) << command << run.out;
        } else {
            EXPECT_EQ(run.out, c.out) << command;
        }
        EXPECT_NE(run.err.find(c.err), std::string::npos) << command << '\n' << run.err;
        if (c.status == 2) { // one line, never a stack trace
            EXPECT_EQ(linesOf(run.err), 1U) << command << '\n' << run.err;
        }
    }
}

TEST(PQOrderTool, HelpForEveryCommandAndQuietLibrary) {
    for (const char* command :
         {"render", "parse", "get", "actions", "password", "card", "base64", "urldecode", "demo"}) {
        const Result run = pqorder({command, "--help"});
        EXPECT_EQ(run.status, 0) << command;
        EXPECT_NE(run.out.find("Usage:"), std::string::npos) << command;
    }
    // The library's log shows only with --verbose.
    EXPECT_EQ(pqorder({"actions", "13"}).err, "");
    EXPECT_NE(pqorder({"--verbose", "actions", "13"}).err.find("Initialisation PQUtils"),
              std::string::npos);
}

TEST(PQOrderTool, DroppedElementsReportedShortly) {
    // A long malformed element is cut in its report, and the order's text
    // (which may hold secrets) is not repeated; --verbose adds the library's
    // own record.
    const std::string element = "x" + std::string(5000, 'y');
    const std::string order = "action=log&secret=hunter2&" + element + "&//";
    const Result quiet = pqorder({"parse", order});
    EXPECT_EQ(quiet.status, 1);
    EXPECT_EQ(quiet.err, "pqorder: element 3 \"xyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyy...\": "
                         "not key=value, dropped\n");
    const Result verbose = pqorder({"--verbose", "parse", order});
    EXPECT_EQ(verbose.status, 1);
    EXPECT_NE(verbose.err.find(quiet.err), std::string::npos);
    EXPECT_GT(linesOf(verbose.err), 1U);
}

TEST(PQOrderTool, RenderThenParseGivesTheValuesBack) {
    const std::vector<std::string> values = {
        "a=b", "x&y", "http://h/p?q=1&r=2", "==&&////", "", "caf\xC3\xA9 \"q\" \\ tab\t", "/"};
    std::vector<std::string> args{"render", "log"};
    for (std::size_t i = 0; i < values.size(); ++i) {
        args.push_back(std::string("k").append(std::to_string(i)).append("=").append(values[i]));
    }
    const Result rendered = pqorder(args);
    ASSERT_EQ(rendered.status, 0) << rendered.err;
    const Result parsed = pqorder({"parse", "--json"}, rendered.out);
    ASSERT_EQ(parsed.status, 0) << parsed.err;
    const auto json = nlohmann::ordered_json::parse(parsed.out);
    EXPECT_EQ(json["action"], "log");
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(json[std::string("k").append(std::to_string(i))], values[i]) << i;
    }

    // A JSON order: the content comes back as the JSON that was given.
    const std::string member = R"({"s":"a=b&c//d \" \\ \u00e9","n":[{"t":false,"z":null}]})";
    const Result jsonOrder =
        pqorder({"render", "--json", "log", std::string("m:=").append(member)});
    ASSERT_EQ(jsonOrder.status, 0) << jsonOrder.err;
    const auto content = nlohmann::ordered_json::parse(
        pqorder({"parse", "--json", jsonOrder.out.substr(0, jsonOrder.out.size() - 1)}).out);
    EXPECT_EQ(content["content"]["m"], nlohmann::ordered_json::parse(member));
}

TEST(PQOrderTool, ParseJsonIsJsonWithEveryPieceInOrder) {
    const Result run = pqorder({"parse", "--json"},
                               "action=a&k=1&k=2&x=\xFF&//\naction=b&content={\"z\":[1]}&//\n");
    ASSERT_EQ(run.status, 0) << run.err;
    const std::size_t split = run.out.find("\n}\n") + 3; // one object per order
    EXPECT_EQ(keysOf(run.out.substr(0, split)),
              (std::vector<std::string>{"action", "k", "k", "x"}));
    EXPECT_EQ(nlohmann::json::parse(run.out.substr(0, split))["x"], "\xEF\xBF\xBD");
    EXPECT_EQ(nlohmann::json::parse(run.out.substr(split))["content"]["z"][0], 1);

    // Content nested deeper than the tool shows as JSON is shown as text.
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    const Result nested =
        pqorder({"parse", "--json"}, std::string("action=a&content=").append(deep).append("&//\n"));
    ASSERT_EQ(nested.status, 0) << nested.err;
    EXPECT_TRUE(nlohmann::json::parse(nested.out)["content"] == deep);
}

TEST(PQOrderTool, ParseStreamsALargeInput) {
    // 100,000 orders of 300 bytes: the output is whole, and memory stays
    // that of a few lines, not of 30 MB of input.
    const auto orders = [](int count) {
        std::string input;
        for (int i = 0; i < count; ++i) {
            input.append("action=log&n=").append(std::to_string(i)).append("&v=");
            input.append(270, 'x').append("&//\n");
        }
        return input;
    };
    const std::vector<std::string> smallAllocator{"ASAN_OPTIONS=quarantine_size_mb=1"};
    const Result few = pqorder({"parse"}, orders(1000), smallAllocator);
    const Result many = pqorder({"parse"}, orders(100000), smallAllocator);
    ASSERT_EQ(many.status, 0) << many.err;
    EXPECT_EQ(linesOf(many.out), 100000U * 4 - 1);
    EXPECT_NE(many.out.find("n       99999\n"), std::string::npos);
    if (!std::filesystem::exists("/proc/self/status")) {
        GTEST_SKIP() << "no /proc here: the output was checked, its memory was not measured";
    }
    EXPECT_GT(few.peakKiB, 0);
    EXPECT_LT(many.peakKiB - few.peakKiB, 16 * 1024) << few.peakKiB << " KiB for 1,000 orders";
}
