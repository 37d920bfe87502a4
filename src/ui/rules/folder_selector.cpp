#include "ui/rules/folder_selector.h"

#include <QFileDialog>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QWheelEvent>

#include "app/folders/security_scoped_bookmark_manager.h"
#include "platform/files/files.h"
#include "ui/art/icons.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

using Kind = app::FolderMenuItem::Kind;

constexpr int kindRole = Qt::UserRole;
constexpr int pathRole = Qt::UserRole + 1;
constexpr int widestItem = 320;

}  // namespace

QString chooseFolder(QWidget* window, const QString& path) {
    const QString chosen = QFileDialog::getExistingDirectory(window, translated("Choose Folder"),
                                                             platform::expandTilde(path));
    if (chosen.isEmpty())
        return {};
    auto* const folders = app::bookmarkManager();
    return platform::abbreviateWithTilde(folders ? folders->keepChosenFolder(chosen) : chosen);
}

FolderSelector::FolderSelector(Use use, const app::RuleBook& rules,
                               platform::UserDefaults& defaults, QWidget* parent)
    : QComboBox(parent), use_(use), rules_(rules), defaults_(defaults) {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(32);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QComboBox::activated, this, &FolderSelector::act);
    fill();
}

void FolderSelector::setFolder(const std::optional<QString>& folder) {
    folder_ = folder;
    fill();
}

void FolderSelector::showPopup() {
    fill();
    QComboBox::showPopup();
}

void FolderSelector::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Home:
        case Qt::Key_End:
            showPopup();
            break;
        default:
            if (event->text().isEmpty() || event->key() == Qt::Key_Space) {
                QComboBox::keyPressEvent(event);
            } else {
                event->ignore();
            }
    }
}

void FolderSelector::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void FolderSelector::fill() {
    app::FolderMenuForm form;
    form.setting = folder_;
    form.forSpecialCase = use_ == Use::Rule;
    const app::FolderMenu menu = app::folderMenu(form, app::Folders(defaults_), rules_, defaults_);
    clear();
    int selected = -1;
    for (std::size_t index = 0; index < menu.items.size(); ++index) {
        if (menu.selectedIndex == static_cast<qsizetype>(index)) {
            selected = count();
        }
        addItemFor(menu.items[index]);
    }
    setCurrentIndex(selected);
    setToolTip(folder_ ? platform::expandTilde(*folder_) : QString());
}

void FolderSelector::addItemFor(const app::FolderMenuItem& item) {
    switch (item.kind) {
        case Kind::Separator:
        case Kind::PseudoSeparator:
            insertSeparator(count());
            return;
        case Kind::Folder:
            addItem(folderIcon(), fontMetrics().elidedText(item.title + item.suffix,
                                                           Qt::ElideMiddle, widestItem));
            setItemData(count() - 1, platform::expandTilde(item.path), Qt::ToolTipRole);
            break;
        default:
            addItem(translated(item.title));
    }
    setItemData(count() - 1, static_cast<int>(item.kind), kindRole);
    setItemData(count() - 1, item.path, pathRole);
}

void FolderSelector::act(int index) {
    switch (static_cast<Kind>(itemData(index, kindRole).toInt())) {
        case Kind::DefaultDownloadsFolder:
            choose({});
            break;
        case Kind::Folder:
            choose(itemData(index, pathRole).toString());
            break;
        case Kind::Other:
            askForOther();
            break;
        case Kind::ClearMenu:
            app::Folders(defaults_).clearRecentDownloadFolders();
            fill();
            break;
        default:
            fill();
    }
}

void FolderSelector::choose(const std::optional<QString>& folder) {
    setFolder(folder);
    Q_EMIT folderChosen();
}

void FolderSelector::askForOther() {
    const QString path =
        chooseFolder(window(), folder_ ? *folder_ : app::Folders(defaults_).downloadsFolder());
    if (path.isEmpty()) {
        fill();
    } else {
        choose(path);
    }
}

}  // namespace ui
