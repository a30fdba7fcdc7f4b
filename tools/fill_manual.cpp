// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Fills what the settings table knows into a text: a manual page or a completion script. A line
// "@SETTINGS@" becomes all settings with meaning, range and default as man(7) text, "@DUMPS@" the
// bits of the dumps with their files; a line with "@KEYS@" keeps its surroundings and gets the
// names of all keys, and "@VERSION@" the version.
//
//     fill_manual TEMPLATE DEFAULT_CFG VERSION >PAGE
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>

#include "md/output/dumps.h"
#include "tools/settings_doc.h"

namespace {

// A paragraph as man(7) text: a dash that is typed, no line that is taken for a request.
std::string Roff(const std::string& sText) {
    std::string s;
    for (const char c : sText) {
        if (c == '-' || c == '\\') s += '\\';
        s += c == '\\' ? 'e' : c;
    }
    if (s.starts_with('.') || s.starts_with('\'')) s.insert(0, "\\&");
    return s;
}

void PrintGroup(const SettingGroup& tGroup) {
    std::cout << ".SS " << Roff(tGroup.sTitle) << "\n";
    if (!tGroup.sIntro.empty()) std::cout << Roff(tGroup.sIntro) << "\n";
    for (const SettingDoc& t : tGroup.aSettings) {
        std::cout << ".TP\n.BR " << Roff(t.pRow->TokenName) << " \" (" << Roff(RangeText(*t.pRow))
                  << ")\"\n";
        if (!t.sMeaning.empty()) std::cout << Roff(t.sMeaning) << "\n.br\n";
        std::cout << "The shipped file sets " << Roff(t.sShipped) << ".\n";
    }
}

// A list entry for each bit: its files, with commas between them.
void PrintDumps() {
    const std::vector<DumpName> aNames = DumpNames();
    for (size_t i = 0; i < aNames.size(); ++i) {
        const DumpName& t = aNames[i];
        const bool bFirst = i == 0 || aNames[i - 1].nBit != t.nBit;
        const bool bLast = i + 1 == aNames.size() || aNames[i + 1].nBit != t.nBit;
        if (bFirst) std::cout << ".TP\n.B " << t.nBit << "\n";
        std::cout << ".IR HOG_feature/" << (t.bEachFrame ? "NNNN" : "") << t.szName
                  << (bLast ? "" : " ,") << "\n";
    }
}

void Replace(const std::string& sMark, const std::string& sBy, std::string* pLine) {
    const size_t n = pLine->find(sMark);
    if (n != std::string::npos) pLine->replace(n, sMark.size(), sBy);
}

void Fill(const char* szTemplate, const char* szDefaultCfg, const char* szVersion) {
    std::ifstream tTemplate(szTemplate);
    if (!tTemplate) throw std::runtime_error(std::string(szTemplate) + ": cannot be read");
    std::string sKeys;
    for (const InputMapEntry& tRow : aInputKeys) {
        sKeys += std::string(sKeys.empty() ? "" : " ") + tRow.TokenName;
    }
    for (std::string sLine; std::getline(tTemplate, sLine);) {
        if (sLine == "@SETTINGS@") {
            for (const SettingGroup& tGroup : ReadSettingsDoc(szDefaultCfg)) PrintGroup(tGroup);
            continue;
        }
        if (sLine == "@DUMPS@") {
            PrintDumps();
            continue;
        }
        Replace("@KEYS@", sKeys, &sLine);
        Replace("@VERSION@", szVersion, &sLine);
        std::cout << sLine << "\n";
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: fill_manual TEMPLATE DEFAULT_CFG VERSION >PAGE\n");
        return 2;
    }
    try {
        Fill(argv[1], argv[2], argv[3]);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "fill_manual: %s\n", e.what());
        return 1;
    }
    return std::cout.flush() ? 0 : 1;
}
