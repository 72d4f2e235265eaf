#pragma once

#include <vector>

#include "dom/MessageQueue.h"
#include "zelloader/Loader.h"

namespace testsupport {

/// The loader of the process for as long as it is installed: keeps what it is asked for, and loads nothing. A test sets
/// the status of a shape instance and completes the event.
class ScriptedLoader : public zelloader::Loader {
public:
  struct Request {
    du::SmartPtr<zelk::Shape> shape;
    unsigned int what = 0;
    du::SmartPtr<zelloader::ShapeLoaderEvent> event;
    zelk::Anchor* anchor = nullptr;
    /// Where the event was to complete when it came; null if it was not managed then.
    du::SmartPtr<dom::MessageQueue> queue;
  };

  std::vector<Request> requests;
  bool answer = true;

  bool LoadShape(const du::SmartPtr<zelk::Shape>& shape, du::Flags what, zelloader::ShapeLoaderEvent* event,
                 zelk::Anchor* anchor) override
  {
    requests.push_back(
        {shape, what.GetBits(), du::SmartPtr<zelloader::ShapeLoaderEvent>(event), anchor, event->GetMessageQueue()});
    return answer;
  }
};

/// Installs a scripted loader for the length of a scope.
class InstalledLoader {
public:
  InstalledLoader() { zelloader::Loader::Install(m_loader); }
  InstalledLoader(const InstalledLoader&) = delete;
  InstalledLoader& operator=(const InstalledLoader&) = delete;
  ~InstalledLoader() { zelloader::Loader::Install(nullptr); }

  [[nodiscard]] std::vector<ScriptedLoader::Request>& Requests() const noexcept { return m_loader->requests; }
  ScriptedLoader* operator->() const noexcept { return m_loader.Get(); }

private:
  const du::SmartPtr<ScriptedLoader> m_loader = du::MakeSmart<ScriptedLoader>();
};

}  // namespace testsupport
