#ifndef CALLJOURNAL_CALLBACKJSON_H
#define CALLJOURNAL_CALLBACKJSON_H

#include "CallBacks.h"
#include "ItemJson.h"

namespace calljournal {

/// The word that people call a call-back by.
constexpr char callBackKind[] = "callback";

/// Id and elements of a call-back.
Json toJson(const StoredCallBack& stored);

/// Makes a call-back of its elements; "Number" stands for "CallBackNumber", and the time now for an absent one. Throws
/// ValueError that names the element at fault.
CallBackItem callBackFromJson(const Json& json);

}  // namespace calljournal

#endif
