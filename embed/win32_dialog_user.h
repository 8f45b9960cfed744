#pragma once

#include <deque>
#include <optional>
#include <string>

#include "platform/contracts/dialogs.h"
#include "platform/win32/sdk.h"

namespace quillet {

// The person in front of the system's file dialogs, played by what was said before: types a name
// and presses the button, answers the question that may follow, and cancels when nothing more was
// said. A dialog that stays open has refused the name.
class Win32DialogUser {
 public:
  Win32DialogUser();
  Win32DialogUser(const Win32DialogUser&) = delete;
  Win32DialogUser& operator=(const Win32DialogUser&) = delete;
  ~Win32DialogUser();

  void WillType(std::string fileName, bool yes);
  void WillCancel();

  // Sits in front of the thread's dialogs while it lives.
  class Attending {
   public:
    explicit Attending(Win32DialogUser& user);
    Attending(const Attending&) = delete;
    Attending& operator=(const Attending&) = delete;
    ~Attending();

   private:
    Win32DialogUser& m_user;
  };

 private:
  struct Answer {
    std::string fileName;
    bool yes = true;
  };

  static void CALLBACK Look(HWND window, UINT message, UINT_PTR user, DWORD time);
  void ActOn(HWND dialog);

  // A window for the clock, which goes on in the dialogs' own message loops.
  HWND m_clock;
  std::deque<std::optional<Answer>> m_answers;
  bool m_saysYes = true;
};

// The file dialogs with that person in front of them.
class AttendedDialogs : public Dialogs {
 public:
  AttendedDialogs(Dialogs& dialogs, Win32DialogUser& user) : m_dialogs(dialogs), m_user(user) {}

  bool GetSaveFileNameA(OPENFILENAME_RECORD& record) override;
  bool GetOpenFileNameA(OPENFILENAME_RECORD& record) override;

 private:
  Dialogs& m_dialogs;
  Win32DialogUser& m_user;
};

}  // namespace quillet
