#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ImportReplay.h"

namespace calljournal {

/// Replays an import and notes what its user would find out only later, in the phonebook: texts that are cut, converted
/// or left behind, lone quotes, a mail column without mail.
class ImportCheck : public ImportReplay {
public:
    using ImportReplay::ImportReplay;

    /// Returns what was noted: the layout, then a line for each kind of finding with the first places and the number of
    /// all. Empty for a file without a layout.
    std::vector<Sentence> report();

protected:
    void recordTaken(const Contact* contact) override;

private:
    /// One kind of finding.
    struct Finding {
        std::string one;   ///< "line gives no contact"
        std::string many;  ///< "lines give no contact"
        std::size_t count = 0;
        std::vector<Sentence> places = {};  ///< The first few.
    };

    /// What is known of a column of the file.
    struct Column {
        bool isTaken = false;       ///< The layout has a place for it in a contact.
        bool isMail = false;        ///< That place is the mail address.
        std::size_t texts = 0;      ///< Records with a text here.
        std::size_t addresses = 0;  ///< Those that look like a mail address.
        std::size_t lost = 0;       ///< Those whose text is in no contact.
        Sentence firstNoMail;       ///< The first text that looks otherwise, and where it is.
    };

    void learnColumns();
    Contact contactOf(std::vector<std::string>& columns);
    void lookAtRecord(const Contact* contact);
    void lookAtText(std::size_t index, const std::string& whole);
    void lookForLoss(std::size_t index, const Contact* contact);
    static void note(Finding& finding, const Sentence& place);
    static Sentence describe(const Finding& finding);
    Sentence describeLostColumns() const;
    Sentence describeMailColumn() const;

    std::vector<Column> columns_;
    std::size_t contactCount_ = 0;
    Finding noContact_ = {"line gives no contact", "lines give no contact"};
    Finding cut_ = {"text is cut to 249 bytes of XML", "texts are cut to 249 bytes of XML"};
    Finding cutCharacter_ = {"text is cut inside a UTF-8 character, which garbles it",
                             "texts are cut inside a UTF-8 character, which garbles them"};
    Finding converted_ = {"text is converted from ISO 8859-1", "texts are converted from ISO 8859-1"};
    Finding notUtf8_ = {"text is not UTF-8 and stays as it is; --from-latin1 converts it",
                        "texts are not UTF-8 and stay as they are; --from-latin1 converts them"};
    Finding loneQuote_ = {"empty quoted field (\"\") becomes a lone double quote",
                          "empty quoted fields (\"\") become lone double quotes"};
};

}  // namespace calljournal
