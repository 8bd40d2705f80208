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

class Terminal {
  public:
    Terminal() {
        if (!terminals_exist() && !make_terminals()) {
            ADD_FAILURE() << "this machine has no terminals, and mounting devpts needs root";
            return;
        }
        m_child = forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_child != 0) return;
        setenv("TERM", "vt100", 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        execl(MORANDEL_COMMAND, "morandel", nullptr);
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

}  // namespace
