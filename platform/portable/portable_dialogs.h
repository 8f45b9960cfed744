#pragma once

#include "platform/contracts/dialogs.h"

namespace quillet {

class PortableMessages;
class SimulatedUser;

// File dialogs without a picture: the simulated user types names into them.
//
// A typed name counts from the initial directory (from the process's own when that is not there),
// or from a folder that was typed before. A name that is refused, be it by the dialog or by the
// user who answers no to its question, leaves the dialog open for the next one; when the user has
// nothing more to type they cancel. The owner, when there is one, must be a live window and stay
// one.
class PortableDialogs : public Dialogs {
 public:
  PortableDialogs(PortableMessages& messages, SimulatedUser& user)
      : m_messages(messages), m_user(user) {}

  bool GetSaveFileNameA(OPENFILENAME_RECORD& record) override;
  bool GetOpenFileNameA(OPENFILENAME_RECORD& record) override;

 private:
  enum class Form { Save, Open };

  bool Show(OPENFILENAME_RECORD& record, Form form);
  bool HasOwner(const OPENFILENAME_RECORD& record) const;

  PortableMessages& m_messages;
  SimulatedUser& m_user;
};

}  // namespace quillet
