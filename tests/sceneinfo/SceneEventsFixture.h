#pragma once

#include <gtest/gtest.h>

#include "RecordingLog.h"
#include "memkernel/OwnerLoop.h"
#include "memkernel/Preferences.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/PlainShapeInstance.h"
#include "testsupport/ScriptedLoader.h"
#include "testsupport/WorldPanel.h"

namespace sceneinfotest {

/// A filled panel on a loop, a scripted loader, and a log of a scene that the panel does not know.
class SceneEventsFixture : public testing::Test {
protected:
  SceneEventsFixture()
  {
    panel.world->preferences = preferences;
    panel.Initialise();
    log.Initialise(scene);
  }
  ~SceneEventsFixture() override { loop->Close(); }

  [[nodiscard]] du::SmartPtr<testsupport::PlainShapeInstance> Make(const char* name, unsigned short status) const
  {
    auto shapeInstance = du::MakeSmart<testsupport::PlainShapeInstance>(panel.kernel[name]);
    shapeInstance->status = status;
    return shapeInstance;
  }
  [[nodiscard]] bool Create(const du::SmartPtr<testsupport::PlainShapeInstance>& shapeInstance)
  {
    return panel.state->UpdateSceneInfoLog_OnShapeInstanceCreate(&log, shapeInstance);
  }
  void ShowThumbnailsIn3d(bool on) const { preferences->SetBool("Model Viewer/show_3d_thumbnails", on); }

  du::SmartPtr<memkernel::OwnerLoop> loop = du::MakeSmart<memkernel::OwnerLoop>();
  du::SmartPtr<dom::ManagedObject> manager = du::MakeSmart<dom::ManagedObject>(loop);
  du::SmartPtr<memkernel::Preferences> preferences = du::MakeSmart<memkernel::Preferences>();
  testsupport::InstalledLoader loader;
  testsupport::WorldPanel panel{"root[a b c]", manager};
  du::SmartPtr<testsupport::PlainShapeScene> scene = du::MakeSmart<testsupport::PlainShapeScene>();
  RecordingLog log{panel.gui.Get()};
};

}  // namespace sceneinfotest
