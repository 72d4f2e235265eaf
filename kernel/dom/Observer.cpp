#include "dom/Observer.h"

namespace dom {

void Observer::HandleMessage(const du::SmartPtr<Message>& /*message*/) {}

void Observer::AddRegistration() const
{
  ++m_registrations;
}

void Observer::RemoveRegistration() const
{
  if (m_registrations == 0 || --m_registrations != 0) {
    return;
  }
  if (m_hasRefusedToDie) {
    m_hasRefusedToDie = false;
    du::ReleaseReference(this, nullptr);
  }
}

bool Observer::_AgreesToDie() const
{
  m_hasRefusedToDie = m_registrations != 0;
  return !m_hasRefusedToDie;
}

}  // namespace dom
