#pragma once

#include <deque>
#include <string>
#include <vector>

#include "Contact.h"
#include "Data.h"

/// The same jobs done with what a user would take instead: well-known libraries, each used as its manual says, building
/// the same records through the same tables.
namespace bench {

// Reading a reply with a missed call list.
void readWithRapidxml(const std::string& reply, std::deque<MissedCallItem>& list);  ///< Default flags, on a copy.
void readWithFastestRapidxml(const std::string& reply, std::deque<MissedCallItem>& list);  ///< In place, all steps off.
void readWithPugixml(const std::string& reply, std::deque<MissedCallItem>& list);
void readWithTinyxml2(const std::string& reply, std::deque<MissedCallItem>& list);
void readWithExpat(const std::string& reply, std::deque<MissedCallItem>& list);
void readWithLibxml2(const std::string& reply, std::deque<MissedCallItem>& list);

// Reading one body.
template <class Item>
void decodeWithRapidxml(const std::string& body, Item& item);
template <class Item>
void decodeWithFastestRapidxml(const std::string& body, Item& item);
template <class Item>
void decodeWithPugixml(const std::string& body, Item& item);

// Writing one body.
template <class Item>
std::string encodeByAppending(const Item& item);  ///< std::string, with reserve.
template <class Item>
std::string encodeWithTinyxml2(const Item& item);
template <class Item>
std::string encodeWithPugixml(const Item& item);
template <class Item>
std::string encodeWithLibxml2(const Item& item);

// Reading a contact file.
std::vector<Contact> importWithLibcsv(const std::string& path);
/// Walks through the columns of all lines and does nothing with them. Returns their bytes.
std::size_t walkWithBoost(const std::string& path);

}  // namespace bench
