#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace calljournal {

/// A sentence for people in which texts of a file are kept apart, since they may be long and hold anything: whoever
/// shows the sentence shows them in its own way.
///
///     Sentence("line 1: one column, \"") + Sentence::fromFile(header) + "\""
class Sentence {
public:
    Sentence() = default;
    Sentence(std::string words) : parts_{{std::move(words), false}} {}
    Sentence(const char* words) : Sentence(std::string(words)) {}

    /// A text of the file; of a long one the first 160 bytes.
    static Sentence fromFile(const std::string& text) {
        constexpr std::size_t most = 160;
        Sentence sentence;
        sentence.parts_.push_back({text.substr(0, most), true});
        return sentence;
    }

    friend Sentence operator+(Sentence one, const Sentence& other) {
        one.parts_.insert(one.parts_.end(), other.parts_.begin(), other.parts_.end());
        return one;
    }

    bool empty() const { return parts_.empty(); }

    /// The whole sentence, with the texts of the file as `show` returns them.
    std::string text(const std::function<std::string(const std::string&)>& show) const {
        std::string whole;
        for (const Part& part : parts_) {
            whole += part.isFromFile ? show(part.text) : part.text;
        }
        return whole;
    }

private:
    struct Part {
        std::string text;
        bool isFromFile;
    };

    std::vector<Part> parts_;
};

}  // namespace calljournal
