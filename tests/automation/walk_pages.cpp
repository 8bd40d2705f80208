// Walks through the windows of a program as a person does: prints the texts of each, a line a text,
// in UTF-8, and does what it is told there.
//     walk_pages COMMAND-LINE STEP...
// A number is a button's, which is pressed once it can be: 1 further, 2 give up, 3 back, 4 again,
// 6 yes, 7 no. "+" and a text choose the button of that text, "tick" the second component of a
// list.
// "=" and a text write it into the box that there is. Ends with the program's status, or with 90
// where no window comes in which the step is possible.

#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int patience = 60'000;  // milliseconds
constexpr int pause = 50;
constexpr int lost = 90;
constexpr wchar_t icon = 0xFFFF;  // begins a text that names one

std::wstring text_of(HWND window) {
    wchar_t text[1024];
    DWORD_PTR length = 0;
    if (SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text),
                            SMTO_ABORTIFHUNG, 2000, &length) == 0) {
        return {};
    }
    return {text, length};
}

bool is_of_class(HWND window, const wchar_t* name) {
    wchar_t found[64];
    return GetClassNameW(window, found, std::size(found)) != 0 && std::wstring(found) == name;
}

struct Search {
    DWORD process;
    HWND window;
};

// The dialog that takes input: that of a question, where one stands before the page.
BOOL CALLBACK take_dialog(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || !IsWindowVisible(window) || !IsWindowEnabled(window) ||
        !is_of_class(window, L"#32770")) {
        return TRUE;
    }
    search.window = window;
    return FALSE;
}

BOOL CALLBACK take_visible(HWND window, LPARAM parameter) {
    if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(parameter)->push_back(window);
    return TRUE;
}

class Walk {
  public:
    explicit Walk(DWORD process) : m_process(process) {}

    // Whether the step was possible within the time there is for it.
    bool take(const std::wstring& step) {
        for (int waited = 0; waited < patience; waited += pause) {
            Sleep(pause);
            look();
            // The old window still, or one that is changing.
            if ((m_dialog == m_left_dialog && m_page == m_left) || m_page != m_before) continue;
            if (m_page != m_shown) show();
            if (try_step(step)) return true;
        }
        return false;
    }

  private:
    void look() {
        Search search{m_process, nullptr};
        EnumWindows(take_dialog, reinterpret_cast<LPARAM>(&search));
        m_dialog = search.window;
        m_controls.clear();
        m_before = m_page;
        m_page.clear();
        if (m_dialog == nullptr) return;
        EnumChildWindows(m_dialog, take_visible, reinterpret_cast<LPARAM>(&m_controls));
        m_page = L"[" + text_of(m_dialog) + L"]\n";
        for (HWND control : m_controls) {
            std::wstring text = text_of(control);
            if (!text.empty() && text[0] != icon) m_page += text + L"\n";
        }
    }

    void show() {
        m_shown = m_page;
        const int length =
            WideCharToMultiByte(CP_UTF8, 0, m_page.data(), static_cast<int>(m_page.size()), nullptr,
                                0, nullptr, nullptr);
        std::string bytes(static_cast<std::size_t>(length), '\0');
        WideCharToMultiByte(CP_UTF8, 0, m_page.data(), static_cast<int>(m_page.size()),
                            bytes.data(), length, nullptr, nullptr);
        std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        std::fflush(stdout);
    }

    bool try_step(const std::wstring& step) {
        if (m_dialog == nullptr) return false;
        switch (step[0]) {
            case L'+':
                return choose(step.substr(1));
            case L'=':
                return write(step.substr(1));
            case L't':
                return tick();
            default:
                return press(_wtoi(step.c_str()));
        }
    }

    bool press(int button) {
        const HWND window = GetDlgItem(m_dialog, button);
        if (window == nullptr || !IsWindowVisible(window) || !IsWindowEnabled(window)) return false;
        PostMessageW(m_dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(window));
        m_left = m_page;
        m_left_dialog = m_dialog;
        return true;
    }

    bool choose(const std::wstring& text) {
        for (HWND control : m_controls) {
            if (text_of(control) != text || !IsWindowEnabled(control)) continue;
            SendMessageW(control, BM_CLICK, 0, 0);
            return true;
        }
        return false;
    }

    bool write(const std::wstring& text) {
        for (HWND control : m_controls) {
            if (!is_of_class(control, L"Edit")) continue;
            SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
            return true;
        }
        return false;
    }

    bool tick() {
        for (HWND control : m_controls) {
            if (!is_of_class(control, WC_TREEVIEWW)) continue;
            const LRESULT first = SendMessageW(control, TVM_GETNEXTITEM, TVGN_ROOT, 0);
            const LRESULT second = SendMessageW(control, TVM_GETNEXTITEM, TVGN_NEXT, first);
            SendMessageW(control, TVM_SELECTITEM, TVGN_CARET, second);
            SendMessageW(control, WM_CHAR, L' ', 0);
            return second != 0;
        }
        return false;
    }

    DWORD m_process;
    HWND m_dialog = nullptr, m_left_dialog = nullptr;
    std::vector<HWND> m_controls;
    std::wstring m_page, m_before, m_left, m_shown;
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count < 3) return 2;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, arguments[1], nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        std::printf("%ls does not start\n", arguments[1]);
        return lost;
    }
    Walk walk(process.dwProcessId);
    for (int i = 2; i < count; ++i) {
        if (walk.take(arguments[i])) continue;
        std::printf("no window for step %d\n", i - 1);
        TerminateProcess(process.hProcess, lost);
    }
    DWORD status = lost;
    if (WaitForSingleObject(process.hProcess, patience) == WAIT_OBJECT_0) {
        GetExitCodeProcess(process.hProcess, &status);
    }
    return static_cast<int>(status);
}
