// Random documents from a seed.
#include "support/generated_xml.h"

#include <string_view>

namespace uxtest {

std::string GeneratedXml::document() {
    std::string xml;
    if (chance(4)) xml += pick({"<?xml version='1.0'?>", "\xEF\xBB\xBF", "\n"});
    xml += misc() + element(0) + misc();
    for (auto i = chance(3) ? random_() % 3 : 0; i > 0; --i) damage(xml);
    return xml;
}

std::string GeneratedXml::document_with_types() {
    std::string xml;
    if (chance(4)) {
        xml += pick({"<?xml version='1.0' encoding='UTF-8'?>", "\xEF\xBB\xBF",
                     "<?xml version='1.0' encoding='ISO-8859-1'?>",
                     "<?xml version='1.0' encoding='utf8' standalone='yes'?>"});
    }
    const std::string types = chance(4) ? "" : doctype();
    hasEntities_ = !types.empty() && chance(2);
    xml += misc() + types + misc() + element(0) + misc();
    hasEntities_ = false;
    for (auto i = chance(3) ? random_() % 3 : 0; i > 0; --i) damage(xml);
    return xml;
}

std::string GeneratedXml::pick(std::initializer_list<const char*> texts) {
    return *(texts.begin() + random_() % texts.size());
}

std::string GeneratedXml::name() {
    return pick({"a", "b", "c", "ab", "name_of_16_bytes", "name_of_17_bytes_", "a:b", "x.y-z",
                 "name_of_17_bytes-", "\xC3\xA9", "n\xC3\xA9", "\xE4\xB8\xAD\xE6\x96\x87",
                 "name_of_15_byte", "_ux_id"});
}

std::string GeneratedXml::blanks() {
    return pick({" ", " ", " ", "\n", "\t", "\r\n", "  "});
}

std::string GeneratedXml::misc() {
    std::string out;
    while (chance(4)) {
        out += pick({"\n", " ", "<!-- c -->", "<?p i?>", "<?p?>", "<!---->",
                     "<!-- \xC3\xA9 - > ? ] -->", "\r\n"});
    }
    return out;
}

std::string GeneratedXml::doctype() {
    std::string subset;
    for (auto i = random_() % 8; i > 0; --i) {
        subset +=
            pick({"<!ENTITY e 'x'>", "<!ENTITY f ' &e; '>", "<!ENTITY g '<a b=\"&e;\">t</a>'>",
                  "<!ENTITY h '&#38;lt;'>", "<!ENTITY i SYSTEM 'i'>", "<!ENTITY j '&k;'>",
                  "<!ENTITY % p 'x'>%p;", "<!ENTITY % q 'x'>", "<!-- c -->", "<?p i?>", "\n",
                  "<!ELEMENT a (b)>", "<!ENTITY blank ' '>", "<!ENTITY l '<c>'>"});
        if (chance(2)) continue;
        subset += "<!ATTLIST " + name() + " " + name() + " " +
                  pick({"CDATA", "ID", "NMTOKEN", "NMTOKENS", "(a|b)"}) + " " +
                  pick({"#IMPLIED", "#REQUIRED", "'a'", "#FIXED 'a'"}) + ">";
    }
    return "<!DOCTYPE r" + pick({"", " SYSTEM 'no.dtd'", " PUBLIC 'p' \"q\""}) + " [" + subset +
           "]>";
}

std::string GeneratedXml::reference() {
    if (hasEntities_ && chance(3)) {
        return pick({"&e;", "&f;", "&g;", "&h;", "&i;", "&j;", "&blank;", "&l;", "&none;"});
    }
    return pick({"&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#32;", "&#10;", "&#13;", "&#9;",
                 "&#x41;", "&#x20AC;", "&#x1F4C8;"});
}

std::string GeneratedXml::words() {
    std::string out;
    for (auto i = random_() % 6; i > 0; --i) {
        out += pick({"text", " ", "a longer text of several words", "\n  ", "\xC3\xA9",
                     "\xD0\x9C\xD0\xB8\xD1\x80 \xD0\xBC\xD0\xB8\xD1\x80", "\xE2\x82\xAC",
                     "\xF0\x9F\x93\x88", "]", "]]", ">", "\r", "\r\n", "\t", "-", "?", "=", "/",
                     "12"});
        if (chance(3)) out += reference();
    }
    return out;
}

std::string GeneratedXml::value() {
    const char* quote = chance(3) ? "'" : "\"";
    return quote + words() + pick({"", "", *quote == '"' ? "'" : "\"", "]]>", "<!--"}) + quote;
}

std::string GeneratedXml::element(int depth) {
    const std::string tag = name();
    std::string xml = "<" + tag;
    while (chance(2)) xml += blanks() + name() + (chance(8) ? " = " : "=") + value();
    if (chance(8)) xml += blanks();
    if (chance(4)) return xml + "/>";
    xml += ">";
    for (auto i = random_() % 5; i > 0; --i) {
        switch (random_() % 6) {
            case 0:
                xml += misc();
                break;
            case 1:
                xml += "<![CDATA[" + words() + "<&" + pick({"", "]", "]]"}) + "]]>";
                break;
            case 2:
            case 3:
                xml += words();
                break;
            default:
                if (depth < 5) xml += element(depth + 1);
        }
    }
    return xml + "</" + tag + (chance(8) ? blanks() : "") + ">";
}

void GeneratedXml::damage(std::string& xml) {
    using namespace std::string_view_literals;
    static constexpr std::string_view kBytes =
        "<>&;'\"]![-?/= \n\rab:\x80\xC3\xA9\xEF\xBF\xBE\x01\0"sv;
    const std::size_t at = random_() % xml.size();
    switch (random_() % 4) {
        case 0:
            xml[at] = kBytes[random_() % kBytes.size()];
            break;
        case 1:
            xml.insert(at, 1, kBytes[random_() % kBytes.size()]);
            break;
        case 2:
            xml.erase(at, 1 + random_() % 3);
            break;
        default:
            xml.insert(at, xml.substr(random_() % xml.size(), 1 + random_() % 12));
    }
    if (xml.empty()) xml = "<";
}

}  // namespace uxtest
