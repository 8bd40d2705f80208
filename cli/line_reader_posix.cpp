// With libedit.

#include <histedit.h>
#include <langinfo.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <system_error>

#include "cli/color.h"
#include "cli/line_reader.h"
#include "cli/words.h"

namespace morandel::cli {
namespace {

struct EndEditing {
    void operator()(EditLine* editing) const { el_end(editing); }
};
struct EndHistory {
    void operator()(History* history) const { history_end(history); }
};

constexpr int most_lines = 1000;

}  // namespace

struct LineReader::Editor {
    std::unique_ptr<History, EndHistory> history{history_init()};
    std::unique_ptr<EditLine, EndEditing> editing;
    Completer completer;
    std::string history_file;
    std::string prompt;
    bool gave_up = false;

    static Editor& of(EditLine* editing) {
        void* self = nullptr;
        el_get(editing, EL_CLIENTDATA, &self);
        return *static_cast<Editor*>(self);
    }

    static char* show_prompt(EditLine* editing) { return of(editing).prompt.data(); }

    static unsigned char give_up(EditLine* editing, int /*key*/) {
        of(editing).gave_up = true;
        std::fputs("^C", stdout);
        return CC_NEWLINE;
    }

    static unsigned char complete(EditLine* editing, int /*key*/) {
        const LineInfo* info = el_line(editing);
        const auto size = static_cast<std::size_t>(info->cursor - info->buffer);
        return of(editing).complete_word({info->buffer, size});
    }

    // Inserts what all words have in common, or shows them where that is nothing.
    unsigned char complete_word(std::string_view line) {
        const std::string_view word = last_word(line);
        const auto words = completer(line.substr(0, line.size() - word.size()), word);
        if (words.empty()) return CC_REFRESH_BEEP;
        const std::string common = common_beginning(words);
        if (common.size() > word.size()) {
            el_insertstr(editing.get(), common.c_str() + word.size());
            return CC_REFRESH;
        }
        if (words.size() == 1) return CC_REFRESH_BEEP;
        std::string shown = "\n";
        for (const std::string& each : words) shown += each + "  ";
        std::puts(shown.c_str());
        return CC_REDISPLAY;
    }

    void keep(const std::string& line) const {
        HistEvent event;
        history_line_added(event, line);
        if (!history_file.empty()) ::history(history.get(), &event, H_SAVE, history_file.c_str());
    }

    void history_line_added(HistEvent& event, const std::string& line) const {
        ::history(history.get(), &event, H_ENTER, line.c_str());
    }
};

// Text is UTF-8, also where nothing says so: a bare system drops what is typed beyond ASCII.
LineReader::LineReader(Completer completer, const std::filesystem::path& history_file)
    : m_editor(std::make_unique<Editor>()) {
    std::setlocale(LC_CTYPE, "");
    if (std::string_view(nl_langinfo(CODESET)) != "UTF-8") std::setlocale(LC_CTYPE, "C.UTF-8");
    m_editor->completer = std::move(completer);
    m_editor->history_file = history_file.string();
    m_editor->editing.reset(el_init("morandel", stdin, stdout, stderr));
    EditLine* editing = m_editor->editing.get();
    if (editing == nullptr) return;
    HistEvent event;
    history(m_editor->history.get(), &event, H_SETSIZE, most_lines);
    history(m_editor->history.get(), &event, H_SETUNIQUE, 1);
    if (!m_editor->history_file.empty()) {
        history(m_editor->history.get(), &event, H_LOAD, m_editor->history_file.c_str());
    }
    el_set(editing, EL_CLIENTDATA, m_editor.get());
    el_set(editing, EL_EDITOR, "emacs");
    el_set(editing, EL_SIGNAL, 1);
    el_set(editing, EL_HIST, history, m_editor->history.get());
    el_set(editing, EL_PROMPT_ESC, &Editor::show_prompt, '\1');
    // In wide characters, of which it makes no copies that it then forgets.
    el_wset(editing, EL_ADDFN, L"give-up-line", L"gives up the line", &Editor::give_up);
    el_wset(editing, EL_ADDFN, L"complete-word", L"completes the word", &Editor::complete);
    el_set(editing, EL_BIND, "^C", "give-up-line", nullptr);
    el_set(editing, EL_BIND, "^I", "complete-word", nullptr);
    el_set(editing, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    // Ctrl-C is a key like others, while a line is edited and between two lines.
    el_set(editing, EL_SETTY, "-d", "intr=", nullptr);
    el_set(editing, EL_SETTY, "-x", "intr=", nullptr);
    el_source(editing, nullptr);
}

LineReader::~LineReader() = default;

bool LineReader::read(const std::string& prompt, std::string& line) {
    const bool colored = has_colors(stdout);
    // The marks tell what takes no room on the screen.
    m_editor->prompt = colored ? "\1\x1b[1;36m\1" + prompt + "\1\x1b[0m\1 " : prompt + ' ';
    if (m_editor->editing == nullptr) return false;
    while (true) {
        m_editor->gave_up = false;
        int size = 0;
        const char* typed = el_gets(m_editor->editing.get(), &size);
        if (typed == nullptr || size <= 0) {
            std::puts("");
            return false;
        }
        if (m_editor->gave_up) continue;
        line.assign(typed, static_cast<std::size_t>(size));
        while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
        if (!line.empty()) m_editor->keep(line);
        return true;
    }
}

}  // namespace morandel::cli
