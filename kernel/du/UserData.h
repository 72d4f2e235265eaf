#pragma once

namespace du {

/// One untyped value that a client hangs on an object for itself; the object neither reads nor owns it.
class UserData {
public:
  UserData() = default;
  virtual ~UserData() = default;

  void SetClientData(void* data) noexcept { m_clientData = data; }
  [[nodiscard]] void* GetClientData() const noexcept { return m_clientData; }

private:
  void* m_clientData = nullptr;
};

}  // namespace du
