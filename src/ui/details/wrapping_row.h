#pragma once

#include <QLayout>
#include <vector>

namespace ui {

/// Its items in a row, and in further rows below where they do not fit: words are of any length in
/// other languages.
class WrappingRow final : public QLayout {
public:
    using QLayout::QLayout;
    ~WrappingRow() override;

    void addItem(QLayoutItem* item) override { items_.push_back(item); }
    [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    [[nodiscard]] QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] QSize sizeHint() const override;
    void setGeometry(const QRect& rect) override;

private:
    struct Arrangement {
        std::vector<QRect> frames;  ///< Of the items, from left to right, within the margins.
        int height = 0;
    };
    [[nodiscard]] Arrangement arrange(int width) const;
    [[nodiscard]] QSize withMargins(QSize size) const;

    std::vector<QLayoutItem*> items_;
};

}  // namespace ui
