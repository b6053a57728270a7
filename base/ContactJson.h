#pragma once

#include <string>

#include "Contact.h"

namespace calljournal {

/// A contact as one line of JSON, without a line end. Keys are the names of its members; empty texts are left out.
std::string contactJson(const Contact& contact);

/// Appends that line to `json`.
void appendContactJson(std::string& json, const Contact& contact);

}  // namespace calljournal
