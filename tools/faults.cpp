// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/faults.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <regex>

namespace {

struct OperatorRow {
    const char* szOld;
    const char* szNew;
};

constexpr OperatorRow aOperators[] = {
    {"<", "<="},  {"<=", "<"},  {">", ">="},  {">=", ">"},  {"==", "!="}, {"!=", "=="},
    {"+", "-"},   {"-", "+"},   {"*", "+"},   {"/", "*"},   {"%", "/"},   {"<<", ">>"},
    {">>", "<<"}, {"&", "|"},   {"|", "&"},   {"^", "|"},   {"&&", "||"}, {"||", "&&"},
    {"+=", "-="}, {"-=", "+="}, {"|=", "&="}, {"&=", "|="}, {"*=", "+="}, {">>=", "<<="},
};

bool IsWord(char c) {
    return ('0' <= c && c <= '9') || ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z') || c == '_' ||
           c == '.';
}

// The end of the string or character that starts at n; n if its line ends first.
size_t QuotedEnd(const std::string& s, size_t n) {
    for (size_t i = n + 1; i < s.size() && s[i] != '\n'; ++i) {
        if (s[i] == s[n]) return i + 1;
        if (s[i] == '\\') ++i;
    }
    return n;
}

// The end of the preprocessor line whose '#' is at n, with the lines that continue it.
size_t DirectiveEnd(const std::string& s, size_t n) {
    size_t nEnd = s.find('\n', n);
    while (nEnd != std::string::npos && s[nEnd - 1] == '\\') nEnd = s.find('\n', nEnd + 1);
    return std::min(nEnd, s.size());
}

// The end of what starts at n and is no code, or says nothing at run time; n for all else.
size_t SkippedEnd(const std::string& s, size_t n) {
    if (s.compare(n, 2, "//") == 0) return std::min(s.find('\n', n), s.size());
    if (s[n] == '"' || s[n] == '\'') return QuotedEnd(s, n);
    if (s[n] == '#') {
        const size_t nLine = s.rfind('\n', n) + 1;  // npos + 1 is 0
        return s.find_first_not_of(" \t", nLine) == n ? DirectiveEnd(s, n) : n;
    }
    if (s.compare(n, 14, "static_assert(") == 0) {
        const size_t nEnd = s.find(");", n);
        return nEnd == std::string::npos ? n : nEnd + 2;
    }
    return n;
}

// The source with blanks for all that is skipped.
std::string CodeOf(const std::string& sSource) {
    std::string sCode = sSource;
    for (size_t n = 0; n < sCode.size();) {
        const size_t nEnd = SkippedEnd(sSource, n);
        for (size_t i = n; i < nEnd; ++i) {
            if (sCode[i] != '\n') sCode[i] = ' ';
        }
        n = std::max(n + 1, nEnd);
    }
    return sCode;
}

std::string HalfMore(const std::string& sNumber) {
    char aText[400];  // the largest double has 309 digits
    const auto tEnd = std::to_chars(std::begin(aText), std::end(aText), std::stod(sNumber) + 0.5,
                                    std::chars_format::fixed);
    const std::string s(aText, tEnd.ptr);
    return s.find('.') == std::string::npos ? s + ".0" : s;
}

// What may stand in place of a word or number.
std::vector<std::string> OtherWords(const std::string& sWord) {
    static const std::regex tInteger("0x[0-9A-Fa-f]+|[0-9]+");
    static const std::regex tFraction("[0-9]+\\.[0-9]+");
    if (sWord == "true") return {"false"};
    if (sWord == "false") return {"true"};
    if (std::regex_match(sWord, tFraction)) return {HalfMore(sWord)};
    if (!std::regex_match(sWord, tInteger)) return {};
    const uint64_t n = std::stoull(sWord, nullptr, 0);
    std::vector<std::string> aOther;
    if (n < UINT64_MAX) aOther.push_back(std::to_string(n + 1));
    if (n > 0) aOther.push_back(std::to_string(n - 1));
    return aOther;
}

struct Token {
    std::string sText;
    std::vector<std::string> aOther;  // what may stand in its place
};

// The token of the code at n; a character without faults is one of its own.
Token TokenAt(const std::string& sCode, size_t n) {
    const std::string sRun = sCode.substr(n, sCode.find_first_of(" \n", n) - n);
    const auto nWord = std::find_if_not(sRun.begin(), sRun.end(), IsWord) - sRun.begin();
    if (nWord > 0) {
        const std::string sWord = sRun.substr(0, static_cast<size_t>(nWord));
        return {sWord, OtherWords(sWord)};
    }
    if (n > 0 && sCode[n - 1] == ' ') {
        for (const OperatorRow& t : aOperators) {
            if (sRun == t.szOld) return {sRun, {t.szNew}};
        }
    }
    if (sRun.starts_with("++")) return {"++", {"--"}};
    if (sRun.starts_with("--")) return {"--", {"++"}};
    if (sRun.size() > 1 && sRun[0] == '!' && (IsWord(sRun[1]) || sRun[1] == '(')) {
        return {"!", {""}};
    }
    return {sCode.substr(n, 1), {}};
}

}  // namespace

std::vector<Fault> FaultsIn(const std::string& sSource) {
    const std::string sCode = CodeOf(sSource);
    std::vector<Fault> aFaults;
    for (size_t n = 0; n < sCode.size();) {
        const Token tToken = TokenAt(sCode, n);
        for (const std::string& sOther : tToken.aOther) {
            aFaults.push_back({n, tToken.sText, sOther});
        }
        n += tToken.sText.size();
    }
    return aFaults;
}

std::string Planted(const std::string& sSource, const Fault& tFault) {
    std::string s = sSource;
    return s.replace(tFault.nAt, tFault.sOld.size(), tFault.sNew);
}
