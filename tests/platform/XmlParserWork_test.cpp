// How much work a message makes, counted instead of timed: the parser's source is compiled with a call of
// __sanitizer_cov_trace_pc in each basic block, and linked so that memchr and memcmp come by here.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <string>

#include "XmlParser.h"

namespace {

std::uint64_t steps = 0;
std::size_t allocations = 0;

}  // namespace

extern "C" {

void __sanitizer_cov_trace_pc();
void* __real_memchr(const void* bytes, int byte, std::size_t size);
void* __wrap_memchr(const void* bytes, int byte, std::size_t size);
int __real_memcmp(const void* one, const void* other, std::size_t size);
int __wrap_memcmp(const void* one, const void* other, std::size_t size);

void __sanitizer_cov_trace_pc() {
    ++steps;
}

void* __wrap_memchr(const void* bytes, int byte, std::size_t size) {
    void* const found = __real_memchr(bytes, byte, size);
    steps +=
        found == nullptr ? size : static_cast<std::size_t>(static_cast<char*>(found) - static_cast<const char*>(bytes));
    return found;
}

int __wrap_memcmp(const void* one, const void* other, std::size_t size) {
    steps += size;
    return __real_memcmp(one, other, size);
}
}

// Not inlined: a compiler that sees malloc on one side only takes the pair for a mismatch.
__attribute__((noinline)) void* operator new(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

__attribute__((noinline)) void operator delete(void* memory) noexcept {
    std::free(memory);
}

__attribute__((noinline)) void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

struct Work {
    std::uint64_t steps;
    std::size_t allocations;
};

Work workOf(const std::string& message) {
    std::uint64_t handedOver = 0;
    XmlParser parser(
        &handedOver, [](void*, const char*, const char**) {}, [](void*, const char*) {},
        [](void* data, const char*, int length) {
            *static_cast<std::uint64_t*>(data) += static_cast<std::uint64_t>(length);
        });
    steps = 0;
    allocations = 0;
    parser.parseMessage(message.data(), static_cast<int>(message.size()));
    const Work work{steps, allocations};
    EXPECT_LE(handedOver, message.size());
    return work;
}

std::string repeated(const std::string& piece, std::size_t size) {
    std::string all;
    while (all.size() < size) {
        all += piece;
    }
    return all;
}

}  // namespace

TEST(XmlParserWork, IsCounted) {
    EXPECT_GT(workOf("<a>").steps, 3u);
    EXPECT_GT(workOf(std::string(1000, 'x')).steps, 1000u);
    EXPECT_GT(workOf("<" + std::string(1000, 'x')).steps, 2000u);
}

TEST(XmlParserWork, GrowsWithTheLengthOnly) {
    // Each byte of these may be looked at a few times, however many of them there are.
    const std::string pieces[] = {
        "<Number>+4989123</Number>",
        "<a>",
        "</a>",
        "<a/>",
        "<",
        "<a",
        "<a ",
        "<a b='",
        "<a b=\"",
        "<a b='<a b=\"",
        "<a b='\" c=\"' ",
        " x=\"<a x=\" ",
        " y='<a x=\"' z='\"",
        "<a b='1' ",
        "<!--",
        "<!-- -",
        "<!-- -->",
        "<!---->x",
        "<![CDATA[",
        "<![CDATA[]]",
        "<![CDATA[x]]>",
        "<?p",
        "<?p?",
        "<?p?>x",
        "<!DOCTYPE a",
        "<!DOCTYPE a [",
        "<!DOCTYPE a '",
        "<!DOCTYPE a [<!--",
        "<!DOCTYPE a [<?p",
        "<!DOCTYPE a>",
        "[",
        "]]>",
        "-->",
        "--",
        "?",
        "&",
        "a",
        " ",
        std::string(1, '\0'),
        "<!--<![CDATA[<?p<!DOCTYPE <a b='<a b=\"</a",
    };
    constexpr std::size_t size = 100000;
    constexpr std::uint64_t stepsPerByte = 60;
    for (const char* const start :
         {"", "<a>", "<a>x<!-- -->", "<a b='", "<a b=\"", "<a b='\" c=\"", "<!DOCTYPE a [", "<!--"}) {
        for (const std::string& piece : pieces) {
            const std::string message = start + repeated(piece, size);
            EXPECT_LE(workOf(message).steps, stepsPerByte * message.size()) << start << " " << piece;
        }
    }
}

TEST(XmlParserWork, AllocatesNothingForOneTagMore) {
    const std::string entry = "<Entry><UniqueId a='1' b='2'>7</UniqueId><n>1<!-- -->2<![CDATA[3]]></n><Empty/></Entry>";
    const std::size_t few = workOf("<Schema name='x'>" + repeated(entry, 2000) + "</Schema>").allocations;
    EXPECT_LT(few, 40u);
    EXPECT_EQ(workOf("<Schema name='x'>" + repeated(entry, 2000000) + "</Schema>").allocations, few);
}
