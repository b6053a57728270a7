#include "ContactSections.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "ColumnTable.h"
#include "ContactFields.h"
#include "ContactMapper.h"
#include "Wording.h"

namespace calljournal {

namespace {

/// The field of a contact that a value of that kind gets if it is the only one; empty if it is not taken over.
std::string_view fieldOf(FieldKind kind) {
    static const ContactMapper mapper(NumberStyle::keep, "DE");
    AddressRecord record;
    record.values.add() = {kind, "1", "column"};
    MappedContact mapped;
    mapper.map(record, mapped);
    return mapped.taken.empty() ? std::string_view() : mapped.taken[0].field;
}

/// Columns whose kind another cell tells, with what they can become.
std::string_view typedField(FieldKind kind) {
    const bool isPhone = kind >= FieldKind::phone1 && kind <= FieldKind::phone7;
    const bool isAddress = kind >= FieldKind::formattedAddress1 && kind != FieldKind::address1Type &&
                           kind != FieldKind::address2Type && kind != FieldKind::address1State &&
                           kind != FieldKind::address2State;
    return isPhone ? "by kind" : isAddress ? "address by kind" : std::string_view();
}

struct Program {
    std::string name;
    std::vector<std::string> languages;
    std::set<std::string> evidence;
    std::vector<const KnownHeader*> shown;  ///< Those in its first language, whose names stand for all.
};

template <class T>
bool contains(const std::vector<T>& all, const T& one) {
    return std::find(all.begin(), all.end(), one) != all.end();
}

std::vector<std::string> splitLanguages(const std::string& list) {
    std::vector<std::string> languages(1);
    for (const char c : list) {
        if (c == ',') {
            languages.emplace_back();
        } else if (c != ' ') {
            languages.back() += c;
        }
    }
    return languages;
}

void add(Program& program, const KnownHeader& header) {
    const std::vector<std::string> languages = splitLanguages(header.languages);
    std::copy_if(languages.begin(), languages.end(), std::back_inserter(program.languages),
                 [&](const std::string& language) { return !contains(program.languages, language); });
    program.evidence.insert(header.evidence);
    if (contains(languages, program.languages[0])) {
        program.shown.push_back(&header);
    }
}

std::vector<Program> programs() {
    std::vector<Program> all;
    for (const KnownHeader& header : builtInColumnTable().headers) {
        auto program = std::find_if(all.begin(), all.end(), [&](const Program& p) { return p.name == header.program; });
        if (program == all.end()) {
            program = all.insert(all.end(), Program{header.program, {}, {}, {}});
        }
        add(*program, header);
    }
    return all;
}

std::string joined(const std::vector<std::string>& texts, std::string_view separator) {
    std::string text;
    for (const std::string& part : texts) {
        text += (text.empty() ? "" : std::string(separator)) + part;
    }
    return text;
}

std::string evidenceText(const std::set<std::string>& evidence) {
    std::vector<std::string> texts;
    for (const auto& [word, text] : {std::pair("export", "exports"), std::pair("texts", "its translations *"),
                                     std::pair("table", "tables of other programs *")}) {
        if (evidence.count(word) != 0) {
            texts.emplace_back(text);
        }
    }
    return joined(texts, ", ");
}

std::string programTable() {
    std::string table = "| Program | Languages | Its names are known from |\n| --- | --- | --- |\n";
    for (const Program& program : programs()) {
        table += "| " + program.name + " | " + joined(program.languages, " ") + " | " + evidenceText(program.evidence) +
                 " |\n";
    }
    return table;
}

/// What becomes of a column: a field, or a field that the cell beside it tells. Empty if it is not taken over.
std::string_view targetOf(FieldKind kind) {
    if (kind == FieldKind::other) {
        return {};
    }
    return kind > FieldKind::other ? typedField(kind) : fieldOf(kind);
}

/// The columns of a program that go to one field, in its order.
std::vector<std::string> namesFor(const Program& program, std::string_view target) {
    std::vector<std::string> names;
    for (const KnownHeader* const header : program.shown) {
        for (const NamedKind& column : header->columns) {
            if (targetOf(column.kind) == target && !contains(names, column.name)) {
                names.push_back(column.name);
            }
        }
    }
    return names;
}

std::string takenFrom(const Program& program) {
    std::vector<std::string_view> targets;
    for (const ContactText& text : contactTexts) {
        targets.push_back(text.name);
    }
    targets.insert(targets.end(), {"by kind", "address by kind"});
    std::vector<std::string> parts;
    for (const std::string_view target : targets) {
        const std::vector<std::string> names = namesFor(program, target);
        if (!names.empty()) {
            parts.push_back("**" + std::string(target) + "** " + joined(names, ", "));
        }
    }
    return joined(parts, "; ");
}

std::string takenTable() {
    std::string table = "| Program | What is taken from it |\n| --- | --- |\n";
    for (const Program& program : programs()) {
        table += "| " + program.name + " (" + program.languages[0] + ") | " + takenFrom(program) + " |\n";
    }
    return table;
}

}  // namespace

std::map<std::string, std::string> contactSections() {
    return {{"programs", programTable()}, {"taken", takenTable()}};
}

}  // namespace calljournal
