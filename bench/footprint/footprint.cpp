// Prints what the library needs of a phone's memory: heap for what it keeps, and stack for what it does.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <functional>
#include <new>
#include <pthread.h>
#include <string>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"
#include "ImportContactsCSVParser.h"

using Helper = CallListDatabaseAdapterHelper;

namespace {

std::size_t liveBytes = 0;
std::size_t blocks = 0;

/// In front of each block, its size; as large as the strictest alignment.
constexpr std::size_t headSize = alignof(std::max_align_t);

/// A missed entry as a phone stores it, with as many calls.
MissedCallItem makeEntry(int calls) {
    MissedCallItem::MissedCallInfo call;
    call.number = "+49301234567";
    call.connectedNumber = "+49301234567";
    call.connectedSurname = "Mustermann";
    call.connectedFirstname = "Katharina";
    call.timeDate = "2024-05-01 10:15:00";
    call.deflectNumber = "600";
    call.deflectName = "Reception desk";
    call.groupName = "Sales";
    call.groupNumber = "6000";
    MissedCallItem entry;
    entry.setUniqueId("1234");
    entry.setEntryId("7");
    entry.setSurname("Mustermann");
    entry.setFirstname("Katharina");
    entry.setPictureClip("1234.jpg");
    for (int i = 0; i < calls; ++i) {
        entry.appendCallInfoToList(call);
    }
    return entry;
}

std::string makeReply(int entries, int calls) {
    std::string reply(Helper::XMLHEADER);
    reply += "<Schema name=\"CallLogMissedCalls\">";
    for (int i = 0; i < entries; ++i) {
        reply += Helper::createXMLField(Helper::ENTRY, Helper::createXMLMissedCallItemBody(makeEntry(calls), false));
    }
    return reply + "</Schema>";
}

void printHeap(const char* figure, int calls) {
    constexpr int entries = 100;
    const std::string reply = makeReply(entries, calls);
    std::deque<MissedCallItem> list;
    const std::size_t bytesBefore = liveBytes;
    const std::size_t blocksBefore = blocks;
    Helper::parseXMLMissedCallList(reply, list);
    std::printf("%s, bytes: %zu\n", figure, (liveBytes - bytesBefore) / entries);
    std::printf("%s, blocks: %zu\n", figure, (blocks - blocksBefore) / entries);
}

/// Runs `work` on a stack of known content and returns how many bytes of it were touched.
std::size_t stackOf(const std::function<void()>& work) {
    constexpr std::size_t size = 1024 * 1024;
    constexpr unsigned char paint = 0xA5;
    void* memory = nullptr;
    if (posix_memalign(&memory, 4096, size) != 0) {
        std::abort();
    }
    unsigned char* const stack = static_cast<unsigned char*>(memory);
    std::fill(stack, stack + size, paint);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, size);
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    if (pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)) != 0) {
        std::abort();
    }
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    const unsigned char* const deepest = std::find_if(stack, stack + size, [](unsigned char c) { return c != paint; });
    const std::size_t touched = static_cast<std::size_t>(stack + size - deepest);
    std::free(memory);
    return touched;
}

void printStack(const char* figure, const std::function<void()>& work) {
    work();  // what is done once, such as binding symbols, does not count
    std::printf("%s, bytes: %zu\n", figure, stackOf(work) - stackOf([] {}));
}

void printStacks(const std::string& csvFile) {
    const MissedCallItem entry = makeEntry(10);
    const std::string body = Helper::createXMLMissedCallItemBody(entry, false);
    const std::string reply = makeReply(20, 10);
    printStack("stack to encode an entry", [&] { Helper::createXMLMissedCallItemBody(entry, false); });
    printStack("stack to decode an entry", [&] {
        MissedCallItem decoded;
        Helper::parseXMLMissedCallItem(body.c_str(), decoded);
    });
    printStack("stack to read and sort a list", [&] {
        CallListDatabaseAdapter adapter;
        std::deque<MissedCallItem> list;
        adapter.processMissedCallDbXml(reply, list);
    });
    printStack("stack to import contacts", [&] {
        std::ofstream(csvFile) << "LastName;FirstName;Business1;Business2;Mobile1;Private1;Company1;Address1;Address2;"
                                  "Position;Email1;DefaultDial\nMustermann;Katharina;+49301234567;;;;;;;;;2\n";
        ImportContactsCSVParser(csvFile, 0);
    });
}

}  // namespace

void* operator new(std::size_t size) {
    void* memory = std::malloc(size + headSize);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    *static_cast<std::size_t*>(memory) = size;
    liveBytes += size;
    ++blocks;
    return static_cast<char*>(memory) + headSize;
}

void operator delete(void* block) noexcept {
    if (block != nullptr) {
        void* memory = static_cast<char*>(block) - headSize;
        liveBytes -= *static_cast<std::size_t*>(memory);
        std::free(memory);
    }
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: footprint SCRATCHFILE\n");
        return 2;
    }
    Helper::init();
    printHeap("heap for an entry of one call", 1);
    printHeap("heap for an entry of ten calls", 10);
    printStacks(argv[1]);
    return 0;
}
