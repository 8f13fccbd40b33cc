// Tests of where the command looks for its installation.
#include "app/installationprefix.h"

#include "support/printqt.h"
#include "support/scopedvariable.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Ostrel::App;
using namespace Qt::StringLiterals;

namespace {

/// A folder with a program directory, which is an installation once the extension scripts have their folder.
class InstallationPrefix : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(QDir(m_folder.path()).mkpath(u"bin"_s)); }

    void install() { ASSERT_TRUE(QDir(m_folder.path()).mkpath(u"lib/extensions/web"_s)); }

    QString folder() const { return m_folder.path(); }
    QString programs() const { return m_folder.filePath(u"bin"_s); }

    ScopedVariable m_variable{"OSTREL_PREFIX"};

private:
    QTemporaryDir m_folder;
};

} // namespace

TEST_F(InstallationPrefix, IsTheFolderAboveTheProgramWhereExtensionScriptsHaveTheirFolder)
{
    install();

    EXPECT_EQ(installationPrefix(programs()), folder());
    EXPECT_EQ(installationPrefix(programs() + u'/'), folder());
}

TEST_F(InstallationPrefix, IsEmptyWithoutAFolderOfExtensionScripts)
{
    EXPECT_EQ(installationPrefix(programs()), QString());
}

TEST_F(InstallationPrefix, IsEmptyWhereAFileHasTheNameOfThatFolder)
{
    ASSERT_TRUE(QDir(folder()).mkpath(u"lib/extensions"_s));
    QFile file(folder() + u"/lib/extensions/web"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));

    EXPECT_EQ(installationPrefix(programs()), QString());
}

TEST_F(InstallationPrefix, GoesIntoTheUnsetVariable)
{
    install();

    provideInstallationPrefix(programs());

    EXPECT_EQ(qEnvironmentVariable("OSTREL_PREFIX"), folder());
}

TEST_F(InstallationPrefix, GoesIntoAVariableThatNamesNoFolder)
{
    install();
    m_variable.set({});

    provideInstallationPrefix(programs());

    EXPECT_EQ(qEnvironmentVariable("OSTREL_PREFIX"), folder());
}

TEST_F(InstallationPrefix, LeavesTheVariableOfTheUserAlone)
{
    install();
    m_variable.set(u"/somewhere/else"_s);

    provideInstallationPrefix(programs());

    EXPECT_EQ(qEnvironmentVariable("OSTREL_PREFIX"), u"/somewhere/else"_s);
}

TEST_F(InstallationPrefix, LeavesTheVariableUnsetWhereThereIsNoInstallation)
{
    provideInstallationPrefix(programs());

    EXPECT_FALSE(qEnvironmentVariableIsSet("OSTREL_PREFIX"));
}
