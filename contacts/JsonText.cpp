#include "JsonText.h"

namespace calljournal {

std::string jsonText(const Json& json, bool indented) {
    return json.dump(indented ? 2 : -1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace calljournal
