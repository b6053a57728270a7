#pragma once

#include <string>

#include "CallListDatabaseAdapterHelper.h"

/// The library's two operations on a body of each kind, under one name.
namespace bench {

template <class Item>
struct Codec;

#define BENCH_CODEC(Kind, word)                                                               \
    template <>                                                                               \
    struct Codec<Kind##CallItem> {                                                            \
        static constexpr const char* name = word;                                             \
        static std::string encode(const Kind##CallItem& item) {                               \
            return CallListDatabaseAdapterHelper::createXML##Kind##CallItemBody(item, false); \
        }                                                                                     \
        static void decode(const std::string& body, Kind##CallItem& item) {                   \
            CallListDatabaseAdapterHelper::parseXML##Kind##CallItem(body.c_str(), item);      \
        }                                                                                     \
    };

BENCH_CODEC(Missed, "missed")
BENCH_CODEC(Dialled, "dialled")
BENCH_CODEC(Received, "received")
BENCH_CODEC(Forwarded, "forwarded")
#undef BENCH_CODEC

}  // namespace bench
