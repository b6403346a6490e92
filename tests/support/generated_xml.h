// Documents made of pieces that matter to whoever reads XML.
#pragma once

#include <initializer_list>
#include <random>
#include <string>

namespace uxtest {

// Most documents are well-formed, some are then broken in a few places.
class GeneratedXml {
public:
    explicit GeneratedXml(unsigned seed) : random_(seed) {}

    // In UTF-8, without a DOCTYPE.
    std::string document();
    // With a DOCTYPE now and then, which declares attributes and entities.
    std::string document_with_types();

private:
    bool chance(unsigned n) { return random_() % n == 0; }
    std::string pick(std::initializer_list<const char*> texts);
    std::string name();
    std::string blanks();
    std::string misc();
    std::string doctype();
    std::string reference();
    std::string words();
    std::string value();
    std::string element(int depth);
    void damage(std::string& xml);

    std::mt19937 random_;
    bool hasEntities_ = false;
};

}  // namespace uxtest
