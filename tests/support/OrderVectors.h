#pragma once

// Reads the shared order text vectors (tests/data/orders.txt; the format is
// described at the top of that file).

#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace pqtest {

struct OrderVector {
    std::string name;
    std::string action;
    std::vector<std::pair<std::string, std::string>> pieces;
    std::string text;
    std::string oneway; // why the text does not read back, empty when it does
};

// \\, \t, \n and \xHH, as the vectors file writes them.
inline std::string unescapeVectorText(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char code = text[++i];
        if (code == 'x' && i + 2 < text.size()) {
            out += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            out += code == 't' ? '\t' : code == 'n' ? '\n' : code;
        }
    }
    return out;
}

inline std::vector<OrderVector> readOrderVectors(const std::string& path) {
    std::ifstream in(path);
    if (!in) {
        throw std::runtime_error("cannot open " + path);
    }
    std::vector<OrderVector> vectors;
    std::string line;
    while (std::getline(in, line)) {
        const std::size_t colon = line.find(": ");
        if (line.empty() || line[0] == '#' || colon == std::string::npos) {
            continue;
        }
        const std::string field = line.substr(0, colon);
        const std::string value = line.substr(colon + 2);
        if (field == "name") {
            vectors.push_back({value, {}, {}, {}, {}});
            continue;
        }
        if (vectors.empty()) {
            throw std::runtime_error("field before a name: " + line);
        }
        OrderVector& vector = vectors.back();
        if (field == "action") {
            vector.action = value;
        } else if (field == "piece") {
            const std::size_t tab = value.find('\t');
            if (tab == std::string::npos) {
                throw std::runtime_error("piece without a tab: " + line);
            }
            vector.pieces.emplace_back(unescapeVectorText(value.substr(0, tab)),
                                       unescapeVectorText(value.substr(tab + 1)));
        } else if (field == "text") {
            vector.text = unescapeVectorText(value);
        } else if (field == "oneway") {
            vector.oneway = value;
        } else {
            throw std::runtime_error("unknown field: " + line);
        }
    }
    return vectors;
}

} // namespace pqtest
