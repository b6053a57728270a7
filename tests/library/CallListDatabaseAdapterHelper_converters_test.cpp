#include <climits>
#include <cstddef>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "CallListDatabaseAdapterHelper.h"

namespace {

using Helper = CallListDatabaseAdapterHelper;

/// One pair of converters: the words of its values, and both fallbacks.
struct Converter {
    const char* name;
    std::string (*toWord)(int);
    int (*toValue)(std::string);
    std::map<int, std::string> words;
    std::string otherWord;  ///< Of a value outside the table.
    int otherValue;         ///< Of a word outside the table.
    int emptyValue;
};

template <class Enumeration, std::string (*function)(Enumeration)>
std::string toWord(int value) {
    return function(static_cast<Enumeration>(value));
}

template <class Enumeration, Enumeration (*function)(const std::string&)>
int toValue(std::string word) {
    return static_cast<int>(function(word));
}

std::string sourceToWord(int value) {
    return Helper::getOrderedContactSourceToString(static_cast<Contact::eOrderedContactSource>(value));
}

int wordToSource(std::string word) {
    const std::string before = word;
    const int value = static_cast<int>(Helper::getOrderedContactSource(word));
    EXPECT_EQ(word, before);
    return value;
}

const std::vector<Converter>& converters() {
    static const std::vector<Converter> all = {
        {"convertTargetLog",
         toWord<CallLogEntryEvent::_LogTarget, &Helper::convertTargetLog>,
         toValue<CallLogEntryEvent::_LogTarget, &Helper::convertTargetLog>,
         {{0, "IN_ANSWERED"},
          {1, "IN_NO_ANSWER"},
          {2, "IN_BUSY"},
          {3, "IN_GROUP_MISSED"},
          {4, "OUT_ANSWERED"},
          {5, "OUT_NO_ANSWER"},
          {6, "OUT_BUSY"},
          {7, "IN_GROUP_BUSY"}},
         "OUT_BUSY",
         6,
         0},
        {"convertPresentationValue",
         toWord<CallLogEntryEvent::_PresentationValue, &Helper::convertPresentationValue>,
         toValue<CallLogEntryEvent::_PresentationValue, &Helper::convertPresentationValue>,
         {{1, "ALLOWED"}, {2, "NOT_ALLOWED"}},
         "NOT_AVAILABLE",
         0,
         0},
        {"convertTimeFormat",
         toWord<CallLogEntryEvent::_TFormat, &Helper::convertTimeFormat>,
         toValue<CallLogEntryEvent::_TFormat, &Helper::convertTimeFormat>,
         {{1, "FORM_AM"}, {2, "FORM_PM"}},
         "FORM_24",
         0,
         0},
        {"convertNumberType",
         toWord<NumberType::NT, &Helper::convertNumberType>,
         toValue<NumberType::NT, &Helper::convertNumberType>,
         {{1, "PRIVATE"}, {2, "BUSINESS1"}, {3, "BUSINESS2"}, {4, "MOBILE"}},
         "NO_ICON",
         0,
         0},
        {"convertTransferNumberTypeValue",
         toWord<TransferNumber::TransferNumberType, &Helper::convertTransferNumberTypeValue>,
         toValue<TransferNumber::TransferNumberType, &Helper::convertTransferNumberTypeValue>,
         {{1, "TRANSFER_DESTINATION_NUMBER"}, {2, "TRANSFER_GROUP_NUMBER"}},
         "TRANSFER_SOURCE_NUMBER",
         0,
         0},
        {"getOrderedContactSource",
         sourceToWord,
         wordToSource,
         {{3, "CSV"}, {4, "WSI"}, {7, "LDAP"}, {8, "LOCAL"}},
         "",
         0,
         0},
    };
    return all;
}

TEST(Converters, WriteEachValueOfTheirTableAsItsWord) {
    for (const Converter& converter : converters()) {
        for (const auto& [value, word] : converter.words) {
            EXPECT_EQ(converter.toWord(value), word) << converter.name << " " << value;
        }
    }
}

TEST(Converters, WriteAnyOtherValueAsTheirFallback) {
    std::vector<int> values = {INT_MIN, INT_MIN + 1, INT_MAX, 99, 255, 256, 257, 65536, 65537, -256};
    for (int value = -2; value <= 12; ++value) {
        values.push_back(value);
    }

    for (const Converter& converter : converters()) {
        for (const int value : values) {
            if (converter.words.count(value) == 0) {
                EXPECT_EQ(converter.toWord(value), converter.otherWord) << converter.name << " " << value;
            }
        }
    }
}

TEST(Converters, ReadEachWordOfTheirTableAsItsValue) {
    for (const Converter& converter : converters()) {
        for (const auto& [value, word] : converter.words) {
            EXPECT_EQ(converter.toValue(word), value) << converter.name << " " << word;
        }
    }
}

/// The places of the word's letters; of a long word the first ones only, so that all their subsets can be tried.
std::vector<std::size_t> letterPlaces(const std::string& word) {
    std::vector<std::size_t> places;
    for (std::size_t place = 0; place < word.size() && places.size() < 12; ++place) {
        if (word[place] >= 'A' && word[place] <= 'Z') {
            places.push_back(place);
        }
    }
    return places;
}

/// The word with small letters at any of these places, other than the word itself.
std::vector<std::string> caseVariants(const std::string& word) {
    const std::vector<std::size_t> places = letterPlaces(word);
    std::vector<std::string> variants;
    for (std::size_t subset = 1; subset < (std::size_t(1) << places.size()); ++subset) {
        std::string variant = word;
        for (std::size_t index = 0; index < places.size(); ++index) {
            if ((subset >> index) % 2 == 1) {
                variant[places[index]] = static_cast<char>(variant[places[index]] - 'A' + 'a');
            }
        }
        variants.push_back(variant);
    }
    return variants;
}

/// Texts close to the word that are not it.
std::vector<std::string> neighbours(const std::string& word) {
    std::vector<std::string> texts = caseVariants(word);
    texts.push_back(word + " ");
    texts.push_back(" " + word);
    texts.push_back(word + word);
    texts.push_back(word + std::string(1, '\0'));
    texts.push_back(word.substr(1));
    texts.push_back(word.substr(0, word.size() - 1));
    texts.push_back("x" + word);
    return texts;
}

/// The value that the table gives the text.
int expectedValue(const Converter& converter, const std::string& text) {
    for (const auto& [value, word] : converter.words) {
        if (word == text) {
            return value;
        }
    }
    return text.empty() ? converter.emptyValue : converter.otherValue;
}

TEST(Converters, ReadAnyTextCloseToAWordAsTheirFallback) {
    for (const Converter& converter : converters()) {
        std::vector<std::string> words = {"NOT_AVAILABLE", "FORM_24", "NO_ICON", "TRANSFER_SOURCE_NUMBER",
                                          "IN_GROUP_CALL", "MISSED",  "0",       "1"};
        for (const auto& [value, word] : converter.words) {
            words.push_back(word);
        }
        for (const std::string& word : words) {
            for (const std::string& text : neighbours(word)) {
                EXPECT_EQ(converter.toValue(text), expectedValue(converter, text)) << converter.name << " " << text;
            }
        }
    }
}

TEST(Converters, ReadTheWordsOfOtherTablesAsTheirFallback) {
    for (const Converter& converter : converters()) {
        for (const Converter& other : converters()) {
            for (const auto& [value, word] : other.words) {
                EXPECT_EQ(converter.toValue(word), expectedValue(converter, word)) << converter.name << " " << word;
            }
            EXPECT_EQ(converter.toValue(other.otherWord), expectedValue(converter, other.otherWord))
                << converter.name << " " << other.otherWord;
        }
    }
}

TEST(Converters, ReadAnEmptyTextAsZero) {
    for (const Converter& converter : converters()) {
        EXPECT_EQ(converter.toValue(""), 0) << converter.name;
    }
}

TEST(Converters, LoseAValueThatWasWrittenAsAFallback) {
    for (const Converter& converter : converters()) {
        if (std::string(converter.name) == "convertTargetLog") {
            continue;
        }
        for (const int value : {-1, 0, 9, 99}) {
            EXPECT_EQ(converter.toValue(converter.toWord(value)), 0) << converter.name << " " << value;
        }
    }
}

TEST(Converters, TellAnEmptyLogTargetFromAnUnknownOne) {
    EXPECT_EQ(static_cast<int>(Helper::convertTargetLog(std::string())), 0);
    EXPECT_EQ(static_cast<int>(Helper::convertTargetLog(std::string("UNHEARD_OF"))), 6);
    EXPECT_EQ(Helper::convertTargetLog(static_cast<CallLogEntryEvent::_LogTarget>(7)), "IN_GROUP_BUSY");
    EXPECT_EQ(static_cast<int>(Helper::convertTargetLog(std::string("IN_GROUP_BUSY"))), 7);
    EXPECT_EQ(static_cast<int>(Helper::convertTargetLog(std::string("IN_GROUP_CALL"))), 6);
    EXPECT_EQ(Helper::convertTargetLog(static_cast<CallLogEntryEvent::_LogTarget>(6)), "OUT_BUSY");
    EXPECT_EQ(Helper::convertTargetLog(static_cast<CallLogEntryEvent::_LogTarget>(99)), "OUT_BUSY");
}

}  // namespace
