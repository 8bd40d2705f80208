// The prompt on a real terminal: history, completion, and nothing that ends it but the end.

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string>

namespace {

// A bare container may lack the file system of terminals; root can mount it for this process.
bool terminals_exist() {
    int terminal = -1;
    int other_end = -1;
    if (openpty(&terminal, &other_end, nullptr, nullptr, nullptr) != 0) return false;
    close(terminal);
    close(other_end);
    return true;
}

// The mount stays inside this process: first nothing may spread from here.
bool make_terminals() {
    if (unshare(CLONE_NEWNS) != 0) return false;
    const auto keep_inside = [](const char* folder) {
        return mount("none", folder, nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    };
    // In a chroot only /dev may be a mount.
    if (!keep_inside("/") && !keep_inside("/dev")) return false;
    return mount("devpts", "/dev/pts", "devpts", 0, "ptmxmode=0666,mode=620") == 0 &&
           terminals_exist();
}

std::string history_file() {
    return testing::TempDir() + "morandel_history_" +
           testing::UnitTest::GetInstance()->current_test_info()->name();
}

class Terminal {
  public:
    // Of a shell where there is something for it to do, else of the prompt.
    explicit Terminal(const char* locale = "C.UTF-8", bool colors = false,
                      const char* shell_command = nullptr) {
        if (!terminals_exist() && !make_terminals()) {
            ADD_FAILURE() << "this machine has no terminals, and mounting devpts needs root";
            return;
        }
        m_child = forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_child != 0) return;
        setenv("TERM", "vt100", 1);
        setenv("NO_COLOR", colors ? "" : "1", 1);
        setenv("MORANDEL_HISTORY", history_file().c_str(), 1);
        setenv("LC_ALL", locale, 1);
        setenv("MORANDEL", MORANDEL_COMMAND, 1);
        if (shell_command != nullptr) {
            execl("/bin/sh", "sh", "-c", shell_command, nullptr);
        } else {
            execl(MORANDEL_COMMAND, "morandel", nullptr);
        }
        _exit(127);
    }
    ~Terminal() {
        if (m_terminal >= 0) close(m_terminal);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    // Types once the prompt is there: what comes earlier can get lost between two line editors.
    void type(const std::string& text) {
        ASSERT_TRUE(shows("> "));
        type_on(text);
    }

    // Goes on with a line.
    void type_on(const std::string& text) {
        ASSERT_EQ(write(m_terminal, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    // Reads until the screen has shown the text; false when it does not come.
    bool shows(const std::string& text) {
        while (m_screen.find(text) == std::string::npos) {
            if (!reads()) return false;
        }
        m_screen.erase(0, m_screen.find(text) + text.size());
        return true;
    }

    // All that it shows until it ends.
    std::string screen() {
        while (reads()) {
        }
        return m_screen;
    }

    int exit_status() {
        while (reads()) m_screen.clear();
        // Its terminal closes a moment before it ends.
        int status = -1;
        for (int tries = 0; tries < 200; ++tries) {
            if (waitpid(m_child, &status, WNOHANG) != 0) break;
            if (tries == 199) kill(m_child, SIGKILL);
            usleep(50'000);
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    // Reads what comes next; false at the end, or when nothing comes for ten seconds.
    bool reads() {
        if (m_terminal < 0) return false;
        pollfd ready{m_terminal, POLLIN, 0};
        if (poll(&ready, 1, 10'000) <= 0) return false;
        std::array<char, 4096> room{};
        const ssize_t size = read(m_terminal, room.data(), room.size());
        if (size <= 0) return false;
        m_screen.append(room.data(), static_cast<std::size_t>(size));
        return true;
    }

    int m_terminal = -1;
    pid_t m_child = -1;
    std::string m_screen;
};

TEST(Prompt, EvaluatesUntilQuit) {
    Terminal t;
    t.type("1+2*3\n");
    EXPECT_TRUE(t.shows("\n7\r\n"));
    t.type("1+\n");
    EXPECT_TRUE(t.shows("(error 30)"));
    t.type("a = 4\n");
    t.type("a*2\n");
    EXPECT_TRUE(t.shows("\n8\r\n"));
    t.type("strlen(\"中文\")\n");
    EXPECT_TRUE(t.shows("\n4\r\n"));
    t.type(":nothing\n");
    EXPECT_TRUE(t.shows("no command"));
    t.type(":help\n");
    EXPECT_TRUE(t.shows(":quit"));
    t.type(":quit\n");
    EXPECT_EQ(t.exit_status(), 0);
}

TEST(Prompt, CompletesFunctionNamesAndRemembersLines) {
    Terminal t;
    t.type("strmis\t(\"ab\", \"ac\")\n");
    EXPECT_TRUE(t.shows("\n1\r\n"));
    t.type("\x1b[A\n");  // the line before
    EXPECT_TRUE(t.shows("\n1\r\n"));
    t.type(":quit\n");
    EXPECT_EQ(t.exit_status(), 0);
}

TEST(Prompt, GivesUpTheLineAtCtrlCAndKeepsTheNames) {
    Terminal t;
    t.type("a = 7\n");
    t.type("a + 1\x03");
    EXPECT_TRUE(t.shows("^C"));
    t.type("a*3\n");
    EXPECT_TRUE(t.shows("\n21\r\n"));
    t.type(":quit\n");
    EXPECT_EQ(t.exit_status(), 0);
}

TEST(Prompt, TakesChineseWhereNothingSaysWhatTextIs) {
    Terminal t("C");
    t.type("strlen(\"中文\")\n");
    EXPECT_TRUE(t.shows("\n4\r\n"));
    t.type(":quit\n");
    EXPECT_EQ(t.exit_status(), 0);
}

TEST(Prompt, KeepsItsHistoryForTheNextTime) {
    (void)std::remove(history_file().c_str());
    {
        Terminal t;
        t.type("6*7\n");
        EXPECT_TRUE(t.shows("\n42\r\n"));
        t.type("exit\n");
        EXPECT_EQ(t.exit_status(), 0);
    }
    Terminal t;
    t.type("\x1b[A\x1b[A\n");  // the line before the one that ended it
    EXPECT_TRUE(t.shows("\n42\r\n"));
    t.type("quit\n");
    EXPECT_EQ(t.exit_status(), 0);
}

TEST(Prompt, CompletesNamesAndCommands) {
    Terminal t;
    EXPECT_TRUE(t.shows(":help helps"));
    t.type("quantity = 8\n");
    t.type("qua\t*2\n");
    EXPECT_TRUE(t.shows("\n16\r\n"));
    t.type("ans + 1\n");
    EXPECT_TRUE(t.shows("\n17\r\n"));
    t.type(":var\t\n");
    EXPECT_TRUE(t.shows("quantity = 8"));
    t.type("str\t");
    EXPECT_TRUE(t.shows("strmismatch"));
    t.type_on("len(\"abc\")\n");
    EXPECT_TRUE(t.shows("\n3\r\n"));
    t.type(":qu\t\n");
    EXPECT_EQ(t.exit_status(), 0);
}

TEST(Prompt, HasColoursWhereTheyAreWanted) {
    Terminal t("C.UTF-8", true);
    EXPECT_TRUE(t.shows("\x1b[1;36m>"));
    t.type_on("1+\n");
    EXPECT_TRUE(t.shows("\x1b[1;31mmorandel:\x1b[0m"));
    EXPECT_TRUE(t.shows("\x1b[1;32m^\x1b[0m"));
    t.type_on(":quit\n");
    EXPECT_EQ(t.exit_status(), 0);
}

// An editor of lines would have no screen there, and its banner would be among what is asked for.
TEST(Prompt, ReadsPlainLinesWhereTheOutputIsNoTerminal) {
    Terminal ended("C.UTF-8", false, "$MORANDEL | sed 's/^/got /'; echo status $?");
    ended.type_on("6*7\n\x04");
    const std::string screen = ended.screen();
    EXPECT_NE(screen.find("got 42\r\nstatus 0"), std::string::npos) << screen;
    EXPECT_EQ(screen.find("Morandel"), std::string::npos) << screen;
    EXPECT_EQ(screen.find("> "), std::string::npos) << screen;

    Terminal interrupted(
        "C.UTF-8", false,
        "trap 'echo caught' INT; $MORANDEL | { trap '' INT; sed -u 's/^/got /'; }");
    interrupted.type_on("6*7\n");
    EXPECT_TRUE(interrupted.shows("got 42"));
    interrupted.type_on("\x03");
    EXPECT_TRUE(interrupted.shows("caught"));
}

// A bar that is due, since what is read comes slowly.
constexpr char slow_table[] = "{ printf 'a\\n1\\n'; sleep 0.3; printf 'x\\n3\\n'; }";

TEST(Progress, IsNotAmongTheRowsOfATableOnTheSameTerminal) {
    Terminal t(
        "C.UTF-8", false,
        (std::string(slow_table) + " | $MORANDEL each --add 'b = a' --on-error skip").c_str());
    EXPECT_EQ(t.screen(),
              "a,b\r\n1,1\r\n"
              "morandel: standard input row 2, b: a: 'x' is not a number\r\n3,3\r\n");
}

TEST(Progress, LeavesACleanLineForMessagesAndAtTheEnd) {
    const std::string command =
        slow_table + std::string(" | $MORANDEL each --add 'b = a' --on-error skip >/dev/null");
    Terminal english("C.UTF-8", false, command.c_str());
    EXPECT_EQ(english.screen(),
              "morandel: standard input row 2, b: a: 'x' is not a number\r\n\r3 rows\r\x1b[K");
    Terminal chinese("zh_CN.UTF-8", false, command.c_str());
    EXPECT_TRUE(chinese.shows("\r3 行\r\x1b[K"));
    EXPECT_EQ(chinese.exit_status(), 0);
}

TEST(Progress, TellsHowMuchOfAFileIsDone) {
    const std::string table = testing::TempDir() + "morandel_progress.csv";
    std::FILE* file = std::fopen(table.c_str(), "w");
    ASSERT_NE(file, nullptr);
    std::fputs("a\n", file);
    for (int row = 0; row < 200'000; ++row) std::fprintf(file, "%d\n", row);
    std::fclose(file);
    // A reader of the table that is slow makes the bar due.
    const std::string command = "{ $MORANDEL each " + table +
                                " --add 'b = a' | { head -c 1; sleep 0.4; cat >/dev/null; }; } "
                                ">/dev/null; rm " +
                                table;
    Terminal t("C.UTF-8", false, command.c_str());
    const std::string screen = t.screen();
    EXPECT_TRUE(screen.starts_with("\r[")) << screen;
    EXPECT_TRUE(screen.ends_with("%\r\x1b[K")) << screen;
    EXPECT_EQ(screen.find('\n'), std::string::npos);
}

}  // namespace
