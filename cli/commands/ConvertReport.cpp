#include "ConvertReport.h"

#include <algorithm>

#include "JsonText.h"
#include "PrintableText.h"
#include "Text.h"
#include "Wording.h"

namespace calljournal {

namespace {

const char* nameOf(RecordResult result) {
    constexpr const char* names[] = {"taken", "duplicate", "empty", "broken"};
    return names[static_cast<int>(result)];
}

std::string nameOf(const Contact& contact) {
    const std::string name = fullName(contact.firstName, contact.lastName);
    return printable(name.empty() ? contact.company1 : name);
}

std::string shownName(const std::string& name) {
    constexpr std::size_t longest = 60;
    return printable(shortened(name, longest));
}

std::vector<std::string> unknownColumns(const Recognition& recognition) {
    std::vector<std::string> names;
    for (const RecognisedColumn& column : recognition.columns) {
        if (!column.isKnown && !column.name.empty()) {
            names.push_back(column.name);
        }
    }
    return names;
}

/// What the user may want to say about a header that was read: texts of columns that are not known are lost.
std::string columnHints(const Recognition& recognition) {
    constexpr std::size_t mostShown = 10;
    std::string hints;
    for (const std::string& name : recognition.unusedMappings) {
        hints += "--map \"" + shownName(name) + "\" fits no column\n";
    }
    const std::vector<std::string> names = unknownColumns(recognition);
    if (names.empty()) {
        return hints;
    }
    hints += "not recognised: ";
    for (std::size_t i = 0; i < std::min(names.size(), mostShown); ++i) {
        hints += (i == 0 ? "" : ", ") + shownName(names[i]);
    }
    hints += names.size() > mostShown ? " and " + std::to_string(names.size() - mostShown) + " more" : "";
    return hints + "; say what a column means with --map \"" + shownName(names[0]) + "=Mobile1\"\n";
}

/// What was done about two contacts that may be one person.
std::string sentenceOf(const NearResult& result) {
    switch (result.outcome) {
        case NearOutcome::kept:
            return "they may be one person; --merge makes them one contact";
        case NearOutcome::alreadyOne:
            return "they are one contact already";
        case NearOutcome::different:
            return "not merged, they differ in " + std::string(result.difference.empty() ? "name" : result.difference);
        default:
            return "they were merged";
    }
}

}  // namespace

std::string ConvertReport::place(const ContactOrigin& contact) const {
    return printable(placeOf(files_[contact.file], contact));
}

void ConvertReport::book(std::size_t file, const Recognition& recognition) {
    const auto known = std::count_if(recognition.columns.begin(), recognition.columns.end(),
                                     [](const RecognisedColumn& column) { return column.isKnown; });
    if (detail_ == json) {
        Json line;
        line["file"] = files_[file];
        line["charset"] = recognition.charset;
        line["program"] = recognition.program;
        line["language"] = recognition.language;
        line["columns"] = recognition.columns.size();
        line["known"] = known;
        line["unknownColumns"] = unknownColumns(recognition);
        line["unusedMappings"] = recognition.unusedMappings;
        out_ << jsonText(line, false) << '\n';
        return;
    }
    out_ << printable(files_[file]) << ": " << recognition.charset << " (" << recognition.charsetWhy << "), ";
    if (recognition.columns.empty()) {
        out_ << recognition.format << '\n';
        return;
    }
    const char* const delimiter = recognition.delimiter == ';'    ? "semicolons"
                                  : recognition.delimiter == '\t' ? "tabs"
                                                                  : "commas";
    out_ << "columns separated by " << delimiter << ", " << known << " of " << recognition.columns.size()
         << " known by name";
    if (!recognition.program.empty()) {
        out_ << ", like " << recognition.program << " (" << recognition.language << ')';
    }
    out_ << '\n' << columnHints(recognition);
}

void ConvertReport::record(const ContactOrigin& origin, const AddressRecord& record, const MappedContact& mapped,
                           RecordResult result, const SpooledContact* earlier) {
    if (detail_ == json) {
        return jsonRecord(origin, record, mapped, result, earlier);
    }
    std::string lines;
    if (detail_ == text && result == RecordResult::taken) {
        for (const TakenField& field : mapped.taken) {
            lines += "  " + std::string(field.field) + " from " + printable(field.source) + '\n';
        }
    }
    for (const Problem& problem : record.problems) {
        lines += "  line " + std::to_string(problem.line) +
                 (problem.column.empty() ? "" : ", " + printable(problem.column)) + ": " + printable(problem.text) +
                 '\n';
    }
    for (const Remark& remark : mapped.remarks) {
        // What has no place in a contact is counted by columns at the end; here it would hide the rest.
        if (detail_ == text || remark.kind != Remark::leftOut) {
            lines += "  " + printable(remark.source) + ": " +
                     (remark.kind == Remark::leftOut ? "left out, the contact has no place for it"
                                                     : printable(remark.reason)) +
                     '\n';
        }
    }
    if (detail_ == remarkable && result == RecordResult::taken && lines.empty()) {
        return;
    }
    out_ << place(origin) << ": ";
    switch (result) {
        case RecordResult::taken:
            out_ << nameOf(mapped.contact);
            break;
        case RecordResult::duplicate:
            out_ << nameOf(mapped.contact) << ", left out: the same as " << place(*earlier);
            break;
        case RecordResult::empty:
            out_ << "left out: it has nothing that a contact has a place for";
            break;
        case RecordResult::broken:
            out_ << "skipped: " << printable(record.fault);
            break;
    }
    out_ << '\n' << lines;
}

void ConvertReport::jsonRecord(const ContactOrigin& origin, const AddressRecord& record, const MappedContact& mapped,
                               RecordResult result, const SpooledContact* earlier) {
    Json line = {{"file", files_[origin.file]},
                 {"record", record.number},
                 {"firstLine", record.firstLine},
                 {"lastLine", record.lastLine},
                 {"result", nameOf(result)}};
    if (earlier != nullptr) {
        line["sameAs"] = {{"file", files_[earlier->file]}, {"record", earlier->record}};
    }
    if (!record.fault.empty()) {
        line["fault"] = record.fault;
    }
    for (const TakenField& field : mapped.taken) {
        line["taken"][std::string(field.field)].push_back(std::string(field.source));
    }
    constexpr const char* kinds[] = {"changed", "leftOut", "doubtful"};
    for (const Remark& remark : mapped.remarks) {
        Json entry = {{"source", std::string(remark.source)}};
        if (!remark.reason.empty()) {
            entry["reason"] = remark.reason;
        }
        line[kinds[remark.kind]].push_back(std::move(entry));
    }
    for (const Problem& problem : record.problems) {
        line["problems"].push_back({{"line", problem.line}, {"column", problem.column}, {"text", problem.text}});
    }
    out_ << jsonText(line, false) << '\n';
}

void ConvertReport::near(const SpooledContact& earlier, const SpooledContact& later, const std::string& shared,
                         const NearResult& result) {
    const std::string outcome = sentenceOf(result);
    if (detail_ == json) {
        const Json line = {{"near",
                            {{{"file", files_[earlier.file]}, {"record", earlier.record}},
                             {{"file", files_[later.file]}, {"record", later.record}}}},
                           {"shared", shared},
                           {"merged", result.outcome == NearOutcome::merged},
                           {"outcome", outcome}};
        out_ << jsonText(line, false) << '\n';
    } else {
        out_ << place(earlier) << " and " << place(later) << " share " << printable(shared) << ": " << outcome << '\n';
    }
}

void ConvertReport::limit(const LimitReached& reached) {
    const std::string sentence = "the phone takes " + counted(reached.limit, "contact") + " and holds " +
                                 std::to_string(reached.existing) + ": of " + std::to_string(reached.contacts) + ", " +
                                 (reached.isCut ? "the first " + std::to_string(reached.written) + " were taken"
                                                : "each of " + std::to_string(reached.files) + " files has at most " +
                                                      std::to_string(reached.limit - reached.existing));
    out_ << (detail_ == json ? jsonText(Json{{"note", sentence}}, false) : sentence) << '\n';
}

void ConvertReport::finish(const ConversionCounts& c, const std::vector<std::string>& written) {
    if (detail_ == json) {
        const Json line = {{"counts",
                            {{"records", c.records},
                             {"contacts", c.contacts},
                             {"duplicates", c.duplicates},
                             {"near", c.near},
                             {"merged", c.merged},
                             {"empty", c.empty},
                             {"broken", c.broken},
                             {"changed", c.changed},
                             {"doubtful", c.doubtful},
                             {"leftOut", c.leftOut}}},
                           {"leftOutOf", c.leftOutOf},
                           {"files", written}};
        out_ << jsonText(line, false) << '\n';
        return;
    }
    for (const auto& [column, count] : c.leftOutOf) {
        out_ << "left out of " << printable(column) << ": " << counted(count, "text") << '\n';
    }
    out_ << counted(c.records, "record") << ": " << counted(c.contacts, "contact") << ", "
         << counted(c.duplicates, "duplicate") << ", " << c.near << " near (" << c.merged << " merged), " << c.empty
         << " empty, " << c.broken << " broken; " << counted(c.changed, "text") << " changed, " << c.doubtful
         << " doubtful, " << c.leftOut << " left out\n";
    for (const std::string& file : written) {
        out_ << "written: " << printable(file) << '\n';
    }
}

}  // namespace calljournal
