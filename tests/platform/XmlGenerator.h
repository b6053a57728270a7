#pragma once

#include <random>
#include <string>

/// Makes well-formed XML documents without document types: attributes, nesting, comments, instructions, CDATA,
/// entities, character references, every kind of line end, names and texts in UTF-8. The same seed makes the same
/// documents.
class XmlGenerator {
public:
    explicit XmlGenerator(unsigned seed) : random_(seed) {}

    std::string document();

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    template <std::size_t size>
    std::string oneOf(const char* const (&choices)[size]) {
        return choices[below(size)];
    }

    std::string name();
    std::string blanks(std::size_t least);
    std::string attributes();
    std::string value(char quote);
    std::string element(int depth);
    std::string content(int depth);
    std::string text();
    std::string cdata();
    std::string comment();
    std::string instruction();
    std::string miscellany();

    std::mt19937 random_;
};
