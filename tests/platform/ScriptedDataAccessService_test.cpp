#include "ScriptedDataAccessService.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace {

using Service = calljournal::ScriptedDataAccessService;
using Texts = std::vector<std::string>;

TEST(ScriptedDataAccessService, AnswersOkUnlessToldOtherwise) {
    Service service;
    EXPECT_EQ(service.processRequest("a"), "ok");
}

TEST(ScriptedDataAccessService, ServesQueuedAnswersOnceInTheirOrder) {
    Service service;
    service.next("one").next(std::string("two")).otherwise("usual");
    EXPECT_EQ(service.processRequest("a"), "one");
    EXPECT_EQ(service.processRequest("a"), "two");
    EXPECT_EQ(service.processRequest("a"), "usual");
    EXPECT_EQ(service.processRequest("a"), "usual");
}

TEST(ScriptedDataAccessService, ServesTheQueueBeforeTheRules) {
    Service service;
    service.when("read", "list").next("first");
    EXPECT_EQ(service.processRequest("read"), "first");
    EXPECT_EQ(service.processRequest("read"), "list");
}

TEST(ScriptedDataAccessService, AnswersARequestThatHoldsAText) {
    Service service;
    service.when("<Entry>", "stored").otherwise("no entry");
    EXPECT_EQ(service.processRequest("<x><Entry>"), "stored");
    EXPECT_EQ(service.processRequest("<x>"), "no entry");
    EXPECT_EQ(service.processRequest("<x><Entry>"), "stored");
}

TEST(ScriptedDataAccessService, AnswersARequestThatAFunctionChooses) {
    Service service;
    service.when([](const std::string& request) { return request.size() > 3; }, "long");
    EXPECT_EQ(service.processRequest("abcd"), "long");
    EXPECT_EQ(service.processRequest("abc"), "ok");
}

TEST(ScriptedDataAccessService, PrefersTheRuleStatedLast) {
    Service service;
    service.when("a", "any").when("ab", "special");
    EXPECT_EQ(service.processRequest("ab"), "special");
    EXPECT_EQ(service.processRequest("ac"), "any");
}

TEST(ScriptedDataAccessService, MakesAReplyFromTheRequest) {
    Service service;
    service.otherwise([](const std::string& request) { return request + request; });
    EXPECT_EQ(service.processRequest("ab"), "abab");
}

TEST(ScriptedDataAccessService, ThrowsWhatItIsToldTo) {
    Service service;
    service.next(Service::failing(std::out_of_range("gone"))).when("write", Service::failing(7));
    try {
        service.processRequest("read");
        FAIL() << "nothing thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "gone");
    }
    EXPECT_THROW(service.processRequest("write"), int);
    EXPECT_EQ(service.processRequest("read"), "ok");
}

TEST(ScriptedDataAccessService, KeepsEveryRequestWithWhatCameOfIt) {
    Service service;
    service.next("yes").next(Service::failing(std::runtime_error("no")));
    service.processRequest("first");
    EXPECT_THROW(service.processRequest("second"), std::runtime_error);
    ASSERT_EQ(service.transcript().size(), 2U);
    EXPECT_EQ(service.transcript()[0].request, "first");
    EXPECT_EQ(service.transcript()[0].reply, "yes");
    EXPECT_FALSE(service.transcript()[0].failed);
    EXPECT_EQ(service.transcript()[1].request, "second");
    EXPECT_EQ(service.transcript()[1].reply, "");
    EXPECT_TRUE(service.transcript()[1].failed);
    EXPECT_EQ(service.requests(), (Texts{"first", "second"}));
}

TEST(ScriptedDataAccessService, KeepsBytesOfAnyValue) {
    Service service;
    const std::string request("a\0<\xff", 4);
    service.when(std::string("\0", 1), std::string("b\0", 2));
    EXPECT_EQ(service.processRequest(request), std::string("b\0", 2));
    EXPECT_EQ(service.requests(), Texts{request});
}

TEST(ScriptedDataAccessService, ShowsAnAnswerItsRequestInTheTranscript) {
    Service service;
    service.otherwise([&service](const std::string&) { return std::to_string(service.transcript().size()); });
    EXPECT_EQ(service.processRequest("a"), "1");
    EXPECT_EQ(service.processRequest("b"), "2");
}

TEST(ScriptedDataAccessService, LetsAnAnswerSendARequestOfItsOwn) {
    Service service;
    service.when("inner", "small")
        .when("outer", [&service](const std::string&) { return service.processRequest("inner") + "er"; })
        .next([&service](const std::string&) { return "<" + service.processRequest("outer") + ">"; });
    EXPECT_EQ(service.processRequest("first"), "<smaller>");
    EXPECT_EQ(service.requests(), (Texts{"first", "outer", "inner"}));
    EXPECT_EQ(service.transcript()[0].reply, "<smaller>");
    EXPECT_EQ(service.transcript()[2].reply, "small");
}

TEST(ScriptedDataAccessService, CountsTheAnswersNobodyAskedFor) {
    Service service;
    EXPECT_EQ(service.unused(), 0U);
    service.next("a").next("b");
    service.processRequest("x");
    EXPECT_EQ(service.unused(), 1U);
}

TEST(ScriptedDataAccessService, ForgetsTheTranscriptButNotTheScript) {
    Service service;
    service.when("a", "rule").next("one").next("two");
    service.processRequest("a");
    service.clearTranscript();
    EXPECT_TRUE(service.transcript().empty());
    EXPECT_EQ(service.processRequest("a"), "two");
    EXPECT_EQ(service.processRequest("a"), "rule");
    EXPECT_EQ(service.requests(), (Texts{"a", "a"}));
}

}  // namespace
