// drag_partner [ADDRESS...]: another program's window, from which the addresses can be dragged and
// into which files can be dropped. Tells on its standard output what happens.
#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <cstdio>

namespace {

void say(const QString& line) {
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

class Partner final : public QLabel {
public:
    explicit Partner(const QStringList& addresses) : addresses_(addresses) {
        setText(QStringLiteral("Another program"));
        setAlignment(Qt::AlignCenter);
        setAcceptDrops(true);
    }

protected:
    void enterEvent(QEnterEvent*) override { say(QStringLiteral("ready")); }

    void mousePressEvent(QMouseEvent*) override { say(QStringLiteral("pressed")); }

    void mouseMoveEvent(QMouseEvent*) override {
        auto* drag = new QDrag(this);
        auto* data = new QMimeData;
        QList<QUrl> urls;
        for (const QString& address : addresses_)
            urls.append(QUrl(address));
        data->setUrls(urls);
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this,
                [](Qt::DropAction action) { say(QStringLiteral("offered %1").arg(action)); });
        const Qt::DropAction action =
            drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::LinkAction);
        say(QStringLiteral("done %1").arg(action));
    }

    void dragEnterEvent(QDragEnterEvent* event) override {
        event->acceptProposedAction();
        questions_ = 0;
    }

    // The first belongs to the entry. Whoever asks again has heard that a drop would be taken.
    void dragMoveEvent(QDragMoveEvent*) override {
        if (++questions_ == 2)
            say(QStringLiteral("asked again"));
    }

    void dropEvent(QDropEvent* event) override {
        event->acceptProposedAction();
        for (const QUrl& url : event->mimeData()->urls())
            say(QStringLiteral("dropped ") + url.toString());
    }

private:
    QStringList addresses_;
    int questions_ = 0;
};

}  // namespace

int main(int count, char** values) {
    QApplication application(count, values);
    Partner partner(QApplication::arguments().mid(1));
    partner.setGeometry(20, 40, 200, 80);
    partner.show();
    return QApplication::exec();
}
