#pragma once

#include <string>
#include <vector>

#include "CallListDatabaseAdapterHelper.h"

/// Calls the callbacks of the missed call list reader, as an XML parser would.
class ReaderEvents {
public:
    explicit ReaderEvents(CallListDatabaseAdapterHelper::MissedCallParser& parser) : parser_(parser) {}

    ReaderEvents& begin(const std::string& name, const std::vector<std::string>& attributes = {}) {
        std::vector<const char*> pointers;
        for (const std::string& text : attributes) {
            pointers.push_back(text.c_str());
        }
        pointers.push_back(nullptr);
        CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLTagBegin(&parser_, name.c_str(),
                                                                                pointers.data());
        return *this;
    }

    ReaderEvents& end(const std::string& name) {
        CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLTagEnd(&parser_, name.c_str());
        return *this;
    }

    /// The text is handed over without a zero behind it.
    ReaderEvents& data(const std::string& text) {
        const std::vector<char> bytes(text.begin(), text.end());
        const char none = '?';
        CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLData(
            &parser_, bytes.empty() ? &none : bytes.data(), static_cast<int>(bytes.size()));
        return *this;
    }

    ReaderEvents& element(const std::string& name, const std::string& text) { return begin(name).data(text).end(name); }

    ReaderEvents& schema(const std::string& name) { return begin("Schema", {"name", name}); }

private:
    CallListDatabaseAdapterHelper::MissedCallParser& parser_;
};
