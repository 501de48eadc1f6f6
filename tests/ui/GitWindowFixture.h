#pragma once
// The fixture of the git window tests: a real window (WindowTest) and a real repository at the
// root of its temporary tree, with the application's Git service pointed at this fixture's own
// for the length of one test. Without git on PATH a test fails at once and says why.
//
// A fixture that builds on it makes its repository (and opens what it needs) in prepare(), which
// runs once the Git service is in place; its own TearDown() calls GitWindowTest::TearDown().

#include "WindowFixture.h"

#include "app/Services.h"
#include "git/Git.h"
#include "git/GitRunner.h"
#include "support/GitTestRepo.h"

namespace orwick::test {

struct GitWindowTest : WindowTest {
    void SetUp() override
    {
        ASSERT_TRUE(gitExecutable().has_value()) << "these tests need git on PATH";
        services().git = &git;
        prepare();
    }
    // The test fixture's own start: its commits, stashes or branches, the window when it opens one.
    virtual void prepare() {}
    // The window goes before the Git service it reads from is taken away.
    void TearDown() override
    {
        window.reset();
        state.reset();
        services().git = nullptr;
    }

    Git git;
    GitTestRepo repo{tree};
};

} // namespace orwick::test
