#include "Finding.h"

namespace calljournal {

namespace {

struct Row {
    Severity severity;
    std::string_view sentence;
};

constexpr Row rows[] = {
#define FINDING(kind, severity, sentence) {Severity::severity, sentence},
#include "FindingKinds.inc"
#undef FINDING
};

const Row& rowOf(const Finding& finding) {
    return rows[static_cast<std::size_t>(finding.kind)];
}

std::string placeWords(const Place& place, ShowValue show) {
    std::string words;
    if (place.entry > 0) {
        words = "entry " + std::to_string(place.entry);
        words += place.uniqueId.empty() ? "" : " (UniqueId " + show(place.uniqueId, ValueUse::id) + ")";
    }
    if (place.call > 0) {
        words += (words.empty() ? "call " : ", call ") + std::to_string(place.call);
    }
    words += words.empty() ? "" : ": ";
    words += place.element.empty() ? "" : show(place.element, ValueUse::name) + ": ";
    return words;
}

/// Fills the places for values in a sentence of the table.
std::string filled(std::string_view sentence, const std::vector<std::string>& values, ShowValue show) {
    std::string text;
    const auto indexAt = [&](std::size_t at) { return static_cast<std::size_t>(sentence[at] - '1'); };
    for (std::size_t at = 0; at < sentence.size(); ++at) {
        if (sentence[at] == '%') {
            const bool isQuoted = at > 0 && sentence[at - 1] == '"';
            text += show(values[indexAt(++at)], isQuoted ? ValueUse::text : ValueUse::name);
        } else if (sentence[at] == '[') {
            if (indexAt(sentence.find('%', at) + 1) >= values.size()) {
                break;
            }
        } else if (sentence[at] == '{') {
            const std::size_t bar = sentence.find('|', at);
            const std::size_t end = sentence.find('}', at);
            const bool isOne = values[indexAt(at + 1)] == "1";
            text += isOne ? sentence.substr(at + 3, bar - at - 3) : sentence.substr(bar + 1, end - bar - 1);
            at = end;
        } else if (sentence[at] != ']') {
            text += sentence[at];
        }
    }
    return text;
}

}  // namespace

Severity Finding::severity() const {
    return rowOf(*this).severity;
}

std::string sentenceOf(const Finding& finding, ShowValue show) {
    std::string sentence = placeWords(finding.place, show) + filled(rowOf(finding).sentence, finding.values, show);
    if (finding.outcome == Outcome::unchanged) {
        sentence += "; it is still read as it stands";
    } else if (finding.outcome == Outcome::changed) {
        sentence += filled("; what is read is \"%1\"", {finding.values.back()}, show);
    }
    return sentence;
}

}  // namespace calljournal
