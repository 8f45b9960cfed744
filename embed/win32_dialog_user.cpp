#include "embed/win32_dialog_user.h"

#include <string_view>
#include <utility>

#include "platform/win32/text.h"

namespace quillet {
namespace {

constexpr UINT kGlanceMilliseconds = 20;

// The field for the file's name, in the dialogs' older and newer form.
constexpr int kNameFields[] = {0x480, 0x47C};

// Keeps a dialog of the thread that is not blocked by another.
BOOL CALLBACK KeepOpenDialog(HWND window, LPARAM result) {
  wchar_t name[8] = L"";
  ::GetClassNameW(window, name, static_cast<int>(std::size(name)));
  const bool isOpen = std::wstring_view(name) == L"#32770" && ::IsWindowVisible(window) &&
                      ::IsWindowEnabled(window);
  if (isOpen) *reinterpret_cast<HWND*>(result) = window;
  return !isOpen;
}

HWND OpenDialog() {
  HWND found = nullptr;
  ::EnumThreadWindows(::GetCurrentThreadId(), &KeepOpenDialog, reinterpret_cast<LPARAM>(&found));
  return found;
}

HWND NameField(HWND dialog) {
  for (const int id : kNameFields)
    if (const HWND field = ::GetDlgItem(dialog, id)) return field;
  return nullptr;
}

// By message: a dialog that is acted on from its own loop closes when that comes by.
void Press(HWND dialog, int button) {
  ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(::GetDlgItem(dialog, button)));
}

}  // namespace

Win32DialogUser::Win32DialogUser()
    : m_clock(::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                nullptr)) {}

Win32DialogUser::~Win32DialogUser() {
  ::DestroyWindow(m_clock);
}

void Win32DialogUser::WillType(std::string fileName, bool yes) {
  m_answers.push_back(Answer{std::move(fileName), yes});
}

void Win32DialogUser::WillCancel() {
  m_answers.push_back(std::nullopt);
}

Win32DialogUser::Attending::Attending(Win32DialogUser& user) : m_user(user) {
  ::SetTimer(user.m_clock, reinterpret_cast<UINT_PTR>(&user), kGlanceMilliseconds, &Look);
}

Win32DialogUser::Attending::~Attending() {
  ::KillTimer(m_user.m_clock, reinterpret_cast<UINT_PTR>(&m_user));
}

// Posted messages come before the clock's: what was pressed has taken effect at the next look.
void CALLBACK Win32DialogUser::Look(HWND, UINT, UINT_PTR user, DWORD) {
  if (const HWND dialog = OpenDialog()) reinterpret_cast<Win32DialogUser*>(user)->ActOn(dialog);
}

void Win32DialogUser::ActOn(HWND dialog) {
  const HWND field = NameField(dialog);
  if (!field) {
    const int wish = m_saysYes ? IDYES : IDNO;
    return Press(dialog, ::GetDlgItem(dialog, wish) ? wish : m_saysYes ? IDOK : IDCANCEL);
  }
  std::optional<Answer> answer;
  if (!m_answers.empty()) {
    answer = std::move(m_answers.front());
    m_answers.pop_front();
  }
  if (!answer) return Press(dialog, IDCANCEL);
  m_saysYes = answer->yes;
  ::SetWindowTextW(field, Utf16(answer->fileName).c_str());
  Press(dialog, IDOK);
}

bool AttendedDialogs::GetSaveFileNameA(OPENFILENAME_RECORD& record) {
  const Win32DialogUser::Attending attending(m_user);
  return m_dialogs.GetSaveFileNameA(record);
}

bool AttendedDialogs::GetOpenFileNameA(OPENFILENAME_RECORD& record) {
  const Win32DialogUser::Attending attending(m_user);
  return m_dialogs.GetOpenFileNameA(record);
}

}  // namespace quillet
