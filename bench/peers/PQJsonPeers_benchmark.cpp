// The peers of the JSON renderer, on the 200 members of PQJson_benchmark:
// RapidJSON's Document and Writer, and nlohmann/json. Each copies the keys
// and strings into its own tree, as ours does.

// RapidJSON scans strings with SSE2 or NEON only when told; every x86-64
// and every arm64 has one of them.
#if defined(__SSE2__)
#define RAPIDJSON_SSE2
#elif defined(__aarch64__) && defined(__ARM_NEON)
#define RAPIDJSON_NEON
#endif
#define RAPIDJSON_HAS_STDSTRING 1

#include <memory>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string>
#include <string_view>
#include <vector>

#include "PQBenchInputs.h"

namespace {

using pqbench::JsonMember;
using Members = std::vector<JsonMember>;

// A Document with its own pool allocator, the way RapidJSON is meant to be
// used for speed.
struct RapidJson {
    static rapidjson::Document build(const Members& members) {
        rapidjson::Document document(rapidjson::kObjectType);
        auto& allocator = document.GetAllocator();
        for (const JsonMember& member : members) {
            rapidjson::Value value;
            switch (member.kind) {
            case JsonMember::Kind::String:
                value.SetString(member.text, allocator);
                break;
            case JsonMember::Kind::Number:
                value.SetInt64(member.number);
                break;
            case JsonMember::Kind::Boolean:
                value.SetBool(member.text == "true");
                break;
            case JsonMember::Kind::Array:
                value.SetArray();
                for (const std::string& item : member.items) {
                    value.PushBack(rapidjson::Value(item, allocator), allocator);
                }
                break;
            }
            document.AddMember(rapidjson::Value(member.key, allocator), value, allocator);
        }
        return document;
    }
    static rapidjson::StringBuffer render(const rapidjson::Document& document) {
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        document.Accept(writer);
        return buffer;
    }
    static std::string_view text(const rapidjson::StringBuffer& buffer) {
        return {buffer.GetString(), buffer.GetSize()};
    }
};

// ordered_json, since our objects keep their members in the order added
// (plain json would sort them, which is other work and other text).
struct Nlohmann {
    static nlohmann::ordered_json build(const Members& members) {
        nlohmann::ordered_json object = nlohmann::ordered_json::object();
        for (const JsonMember& member : members) {
            nlohmann::ordered_json& value = object[member.key];
            switch (member.kind) {
            case JsonMember::Kind::String:
                value = member.text;
                break;
            case JsonMember::Kind::Number:
                value = member.number;
                break;
            case JsonMember::Kind::Boolean:
                value = member.text == "true";
                break;
            case JsonMember::Kind::Array:
                value = member.items;
                break;
            }
        }
        return object;
    }
    static std::string render(const nlohmann::ordered_json& object) { return object.dump(); }
    static std::string_view text(const std::string& rendered) { return rendered; }
};

// Whether the peer's text says what ours says: the same members in the same
// order, once both are parsed back.
bool sameAsOurs(std::string_view text) {
    static const auto ours = nlohmann::ordered_json::parse(pqbench::ourJsonMembersText());
    return nlohmann::ordered_json::parse(text) == ours;
}

// Renders the members' tree, built once, or built anew each time.
template <class Peer, bool kBuildEachTime> void BM_PeerJson(benchmark::State& state) {
    const Members members = pqbench::jsonMembers();
    if constexpr (!kBuildEachTime) {
        pqbench::churn(state.range(0), [&] {
            return std::make_unique<decltype(Peer::build(members))>(Peer::build(members));
        });
    }
    const auto tree = Peer::build(members);
    const auto rendered = Peer::render(tree);
    const std::size_t bytes = Peer::text(rendered).size();
    if (!sameAsOurs(Peer::text(rendered))) {
        state.SkipWithError("the peer's text differs from ours");
        return;
    }
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        if constexpr (kBuildEachTime) {
            benchmark::DoNotOptimize(Peer::render(Peer::build(members)));
        } else {
            benchmark::DoNotOptimize(Peer::render(tree));
        }
    }
    pqbench::perOperation(state, bytes, allocations);
}
BENCHMARK(BM_PeerJson<RapidJson, false>)->Name("BM_Peer_RapidJson_Render")->Arg(0)->Arg(1);
BENCHMARK(BM_PeerJson<RapidJson, true>)->Name("BM_Peer_RapidJson_BuildAndRender");
BENCHMARK(BM_PeerJson<Nlohmann, false>)->Name("BM_Peer_Nlohmann_Render")->Arg(0)->Arg(1);
BENCHMARK(BM_PeerJson<Nlohmann, true>)->Name("BM_Peer_Nlohmann_BuildAndRender");

} // namespace
