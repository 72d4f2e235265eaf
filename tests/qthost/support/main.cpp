#include <QApplication>

#include <gmock/gmock.h>

// Without a screen, unless somebody asks for one.
int main(int argc, char** argv)
{
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const QApplication application(argc, argv);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
