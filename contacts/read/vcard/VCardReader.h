#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "AddressReader.h"
#include "ColumnFinder.h"
#include "VCardLines.h"

namespace calljournal {

/// Returns whether a text is a file of vCards: it begins with BEGIN:VCARD.
bool isVCard(std::string_view beginning);

/// Reads the cards of a file, version 2.1, 3.0 or 4.0, each of which says its own.
class VCardReader : public AddressReader {
public:
    VCardReader(TextStream stream, std::shared_ptr<const ColumnFinder> finder, Recognition recognition);

    bool next(AddressRecord& record) override;
    std::size_t bytesRead() const override { return lines_.bytesRead(); }

private:
    bool take() { return std::exchange(isHeld_, false) || lines_.next(property_); }
    void skipToCard(AddressRecord& record);
    void readCard(AddressRecord& record);
    void skipNested(AddressRecord& record);
    void addProperty(AddressRecord& record);
    void addText(AddressRecord& record, const VCardProperty& property, FieldKind kind, std::string_view text);
    void addOther(AddressRecord& record);
    void addName(AddressRecord& record);
    void addOrganization(AddressRecord& record);
    void finishCard(AddressRecord& record);
    void addPhones(AddressRecord& record);
    void addMails(AddressRecord& record);
    void addAddress(AddressRecord& record, const VCardProperty& property);
    FieldKind phoneKind(const VCardProperty& property) const;
    FieldKind addressKind(const VCardProperty& property) const;
    std::string labelOf(const VCardProperty& property) const;

    VCardLines lines_;
    std::shared_ptr<const ColumnFinder> finder_;
    VCardProperty property_;
    bool isHeld_ = false;  ///< property_ is the next one.
    std::size_t number_ = 0;
    // Of the card that is being read.
    bool isOldVersion_ = false;
    std::size_t size_ = 0;
    std::vector<VCardProperty> phones_;
    std::vector<VCardProperty> mails_;
    std::vector<VCardProperty> addresses_;
    std::unordered_map<std::string, std::string> labels_;  ///< What a group of properties is called.
};

}  // namespace calljournal
