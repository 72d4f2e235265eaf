#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <memory>

namespace {

/// One application for all tests of a run, whose settings go into a folder of its own.
class QtEnvironment final : public testing::Environment {
public:
  void SetUp() override
  {
    ASSERT_TRUE(m_settings.isValid());
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_settings.path());
    m_application = std::make_unique<QApplication>(m_argc, m_argv);
    QApplication::setOrganizationName("guitree");
    QApplication::setApplicationName("viewer-tests");
  }
  void TearDown() override { m_application.reset(); }

private:
  QTemporaryDir m_settings;
  int m_argc = 1;
  char m_name[13] = "viewer-tests";
  char* m_argv[2] = {m_name, nullptr};
  std::unique_ptr<QApplication> m_application;
};

const testing::Environment* const s_environment =
    testing::AddGlobalTestEnvironment(std::make_unique<QtEnvironment>().release());

}  // namespace
