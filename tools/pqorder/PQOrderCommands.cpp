// render, parse, get and actions: order text in and out.

#include <algorithm>
#include <charconv>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>

#include "PQDebug/PQException.h"
#include "PQOrderTool.h"
#include "PQUtils/PQUtils.h"

namespace pqorder {
namespace {

using namespace PQ_UTILS;
using Json = nlohmann::ordered_json;

constexpr std::string_view kContentKey = "content";
constexpr std::string_view kLineFeedToken = "--endl--";

// --- The action vocabulary ---------------------------------------------------

std::optional<int> asNumber(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] =
                std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0U : 1U)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::string lowered(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

// The closest action name to `name`, when one is close enough to be meant.
std::optional<std::string> closestAction(std::string_view name) {
    std::optional<std::string> best;
    std::size_t bestDistance = std::max<std::size_t>(2, name.size() / 3) + 1;
    for (const auto& row : get_PQReceivedOrderTypeRows()) {
        const std::size_t distance = editDistance(lowered(name), lowered(row.name));
        if (distance < bestDistance) {
            bestDistance = distance;
            best = row.name;
        }
    }
    return best;
}

std::string unknownAction(std::string_view name) {
    std::string message = "unknown action '" + std::string(name) + "'";
    if (const auto close = closestAction(name)) {
        message += "; did you mean '" + *close + "'?";
    }
    return message;
}

// The action named, or numbered, by `text`; nullopt when there is none.
std::optional<PQReceivedOrderType> findAction(std::string_view text) {
    try {
        if (const auto number = asNumber(text)) {
            const auto action = static_cast<PQReceivedOrderType>(*number);
            (void)PQ_DEBUG::getWstringFromIntT<PQReceivedOrderType>(
                PQ_DEBUG::PQObjectType_PQReceivedOrderType, action,
                &initialize_public_PQReceivedOrderType);
            return action;
        }
        return PQ_DEBUG::getIntFromWstringT<PQReceivedOrderType>(
            PQ_DEBUG::PQObjectType_PQReceivedOrderType, std::string(text),
            &initialize_public_PQReceivedOrderType);
    } catch (const PQ_DEBUG::PQException&) {
        return std::nullopt;
    }
}

// --- JSON text ---------------------------------------------------------------

// Deeper JSON is not read: writing it back (and building nodes from it)
// takes a call frame per level.
constexpr std::size_t kMaxJsonDepth = 512;

// The deepest nesting of arrays and objects in `text`, strings skipped.
std::size_t nestingDepth(std::string_view text) {
    std::size_t depth = 0;
    std::size_t deepest = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            i += c == '\\' ? 1 : 0;
            inString = c != '"';
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            deepest = std::max(deepest, ++depth);
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return deepest;
}

// The JSON value of `text`; nullopt when it is not JSON or nested too deep.
std::optional<Json> readJson(std::string_view text) {
    if (nestingDepth(text) > kMaxJsonDepth) {
        return std::nullopt;
    }
    Json value = Json::parse(text, nullptr, false);
    if (value.is_discarded()) {
        return std::nullopt;
    }
    return value;
}

// --- Building orders ---------------------------------------------------------

struct Assignment {
    std::string key;
    std::string value;
    bool isJson = false; // KEY:=JSON
};

Assignment splitAssignment(const std::string& piece, bool jsonAllowed) {
    const std::size_t equals = piece.find('=');
    if (equals == std::string::npos) {
        throw UsageError("'" + piece + "' is not KEY=VALUE");
    }
    Assignment assignment{piece.substr(0, equals), piece.substr(equals + 1)};
    if (jsonAllowed && !assignment.key.empty() && assignment.key.back() == ':') {
        assignment.key.pop_back();
        assignment.isJson = true;
    }
    return assignment;
}

// Order text carries numbers, booleans and null only as members of an
// object: never at the top of a JSON order nor in an array.
[[noreturn]] void literalOutsideObject(const Json& value, std::string_view where) {
    throw UsageError(value.dump() + " " + std::string(where) +
                     ": numbers, booleans and null can only be members of an object");
}

// A JSON value given on the command line, as JSON order nodes.
std::unique_ptr<PQJsonOrder> jsonNode(const Json& value) {
    if (value.is_object()) {
        auto object = std::make_unique<PQJsonObject>();
        for (const auto& [key, member] : value.items()) {
            if (member.is_structured() || member.is_string()) {
                object->addValue_noCheck(key, jsonNode(member));
            } else {
                object->addValue_nostring(key, member.dump());
            }
        }
        return object;
    }
    if (value.is_array()) {
        auto array = std::make_unique<PQJsonArray>();
        for (const Json& element : value) {
            if (!element.is_structured() && !element.is_string()) {
                literalOutsideObject(element, "in an array");
            }
            array->addValue(jsonNode(element));
        }
        return array;
    }
    return std::make_unique<PQJsonString>(value.get<std::string>());
}

void addJsonMember(PQJsonOrder& root, const Assignment& assignment) {
    if (!assignment.isJson) {
        root.addValue_noCheck(assignment.key, assignment.value);
        return;
    }
    const std::optional<Json> read = readJson(assignment.value);
    if (!read) {
        throw UsageError("the value of '" + assignment.key +
                         "' is not JSON (or is nested deeper than " +
                         std::to_string(kMaxJsonDepth) + " levels)");
    }
    const Json& value = *read;
    if (!value.is_structured() && !value.is_string()) {
        literalOutsideObject(value, "as '" + assignment.key + "'");
    }
    root.addValue_noCheck(assignment.key, jsonNode(value));
}

// --- Showing pieces ----------------------------------------------------------

// A content value as its JSON text: tokens are already restored by the
// reader, line feeds are still "--endl--".
std::string decodedContent(const std::string& value) {
    return *PQString::replace_pq(value, kstring(kLineFeedToken), "\n", false);
}

struct Shown {
    std::string key;
    std::string value;
    bool isContent;
};

// The longest part of a dropped element that its report shows.
constexpr std::size_t kShownElementBytes = 40;

// One short line per element the reader dropped; the library's own record
// of it (the whole order and the call chain) shows only with --verbose.
void reportDropped(const PQDroppedElement& drop, std::ostream& err) {
    const std::string_view element = drop.element;
    const bool cut = element.size() > kShownElementBytes;
    err << "pqorder: element " << drop.index + 1 << " \""
        << printable(element.substr(0, kShownElementBytes)) << (cut ? "...\"" : "\"") << ": "
        << drop.reason << ", dropped\n";
}

std::vector<Shown> piecesOf(const std::string& order, bool raw, Status& status, std::ostream& err) {
    std::vector<PQDroppedElement> dropped;
    const auto pieces =
        PQReceivedOrder::getOrderPiecesFromOrder(PQSourceOrderWrapper(order), !raw, dropped);
    for (const PQDroppedElement& drop : dropped) {
        reportDropped(drop, err);
        status = Status::invalid;
    }
    std::vector<Shown> shown;
    for (const PQOrderPiece& piece : *pieces) {
        const PQSecuredString value = piece.get_pieceValue();
        const bool isContent = !raw && piece.get_key() == kContentKey;
        shown.push_back(
            {piece.get_key(),
             isContent ? decodedContent(*value.getStringSource()) : *value.getStringSource(),
             isContent});
    }
    return shown;
}

void printTable(const std::vector<Shown>& pieces, std::ostream& out) {
    std::size_t width = 0;
    for (const Shown& piece : pieces) {
        width = std::max(width, printable(piece.key).size());
    }
    for (const Shown& piece : pieces) {
        const std::string key = printable(piece.key);
        out << key << std::string(width - key.size() + 2, ' ') << printable(piece.value) << '\n';
    }
}

// `text` with every line after the first indented by `indent`.
std::string indented(const std::string& text, std::string_view indent) {
    std::string result;
    for (const char c : text) {
        result += c;
        if (c == '\n') {
            result += indent;
        }
    }
    return result;
}

void printJson(const std::vector<Shown>& pieces, std::ostream& out) {
    out << '{';
    const char* separator = "\n  ";
    for (const Shown& piece : pieces) {
        out << separator << jsonQuoted(piece.key) << ": ";
        separator = ",\n  ";
        const std::optional<Json> content =
            piece.isContent ? readJson(piece.value) : std::optional<Json>();
        if (content) {
            out << indented(content->dump(2, ' ', false, Json::error_handler_t::replace), "  ");
        } else {
            out << jsonQuoted(piece.value);
        }
    }
    out << (pieces.empty() ? "}\n" : "\n}\n");
}

} // namespace

Status render(const RenderOptions& options, Streams io) {
    const auto action = findAction(options.action);
    if (!action) {
        throw UsageError(unknownAction(options.action));
    }
    std::unique_ptr<PQOrder> order;
    if (options.json) {
        auto root = std::make_unique<PQJsonOrder>(*action);
        for (const std::string& piece : options.pieces) {
            addJsonMember(*root, splitAssignment(piece, true));
        }
        order = std::move(root);
    } else {
        order = std::make_unique<PQOrder>(*action, PQOrderType_ORDER_NORMAL);
        for (const std::string& piece : options.pieces) {
            const Assignment assignment = splitAssignment(piece, false);
            order->add_orderPiece_noCheck(assignment.key, assignment.value);
        }
    }
    io.out << *order->get_orderString().getStringSource() << '\n';
    return Status::ok;
}

Status parse(const ParseOptions& options, Streams io) {
    bool first = true;
    return forEachInput(options.text, io.in, [&](const std::string& order) {
        Status status = Status::ok;
        const std::vector<Shown> pieces = piecesOf(order, options.raw, status, io.err);
        if (options.json) {
            printJson(pieces, io.out);
        } else {
            io.out << (first ? "" : "\n");
            printTable(pieces, io.out);
        }
        first = false;
        return status;
    });
}

Status get(const std::string& key, const std::optional<std::string>& text, Streams io) {
    return forEachInput(text, io.in, [&](const std::string& order) {
        Status status = Status::ok;
        for (const Shown& piece : piecesOf(order, false, status, io.err)) {
            if (piece.key == key) {
                io.out << piece.value << '\n';
                return status;
            }
        }
        io.err << "pqorder: no piece '" << key << "' in " << printable(order) << '\n';
        return Status::invalid;
    });
}

Status actions(const std::optional<std::string>& query, Streams io) {
    if (!query) {
        for (const auto& row : get_PQReceivedOrderTypeRows()) {
            io.out << row.value << '\t' << row.name << '\n';
        }
        return Status::ok;
    }
    const auto action = findAction(*query);
    if (!action) {
        io.err << "pqorder: "
               << (asNumber(*query) ? "no action has the value " + *query : unknownAction(*query))
               << '\n';
        return Status::invalid;
    }
    if (asNumber(*query)) {
        io.out << *PQ_DEBUG::getWstringFromIntT<PQReceivedOrderType>(
                      PQ_DEBUG::PQObjectType_PQReceivedOrderType, *action,
                      &initialize_public_PQReceivedOrderType)
               << '\n';
    } else {
        io.out << static_cast<int>(*action) << '\n';
    }
    return Status::ok;
}

} // namespace pqorder
