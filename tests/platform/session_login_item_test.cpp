#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "platform/files/files.h"
#include "platform/session/login_item.h"

using namespace Qt::Literals::StringLiterals;

namespace {

TEST(LoginItemTest, IsAnAutostartEntryThatDesktopsCanSwitchOff) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"autostart/com.tarnworks.Orlop.desktop"_s);
    const platform::LoginItem item(path, uR"(/opt/a "b" $c 100%\d/orlop)"_s);
    EXPECT_FALSE(item.isEnabled());
    EXPECT_FALSE(item.setEnabled(true));
    EXPECT_TRUE(item.isEnabled());
    const QByteArray entry = platform::readFile(path, 1 << 16).data;
    EXPECT_TRUE(entry.contains(R"(Exec="/opt/a \\"b\\" \\$c 100%%\\\\d/orlop")")) << entry.data();

    for (const char* switchedOff : {"Hidden=true\n", "X-GNOME-Autostart-enabled = false\n"}) {
        QByteArray other = entry;
        other.replace("X-GNOME-Autostart-enabled=true\n", switchedOff);
        ASSERT_FALSE(platform::writeFileAtomically(path, other));
        EXPECT_FALSE(item.isEnabled()) << switchedOff;
    }
    EXPECT_FALSE(item.setEnabled(false));
    EXPECT_FALSE(platform::pathExists(path));
    EXPECT_FALSE(item.setEnabled(false)) << "it is gone already";
    EXPECT_TRUE(platform::LoginItem(u"/proc/no/such.desktop"_s, u"/orlop"_s).setEnabled(true));
}

}  // namespace
