#include "app/md_sim_run.h"

#include <gtest/gtest.h>

#include "md/run_state.h"

TEST(SetPathSep, AnyBackslashInTheNameDecides) {
    for (const auto& [szName, cSep] :
         {std::pair<const char*, char>{nullptr, '/'}, {"dir/MD", '/'}, {"c:\\a/MD", '\\'}}) {
        SetPathSep(szName);
        EXPECT_EQ(cPathSep, cSep) << cSep;
    }
    cPathSep = '/';
}
