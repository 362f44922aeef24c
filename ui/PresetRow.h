#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

namespace Lumora {

class TrashButton;

// One preset in a presets list: a card with its name, description and date.
// Clicking the card applies the preset; its small buttons rename, export and
// delete it. The preset in use wears a "In use" mark.
class PresetRow : public QFrame {
    Q_OBJECT
public:
    PresetRow(QWidget* parent, const QString& name, const QString& description,
              const QString& savedAt, bool current, bool exportable);

    const QString& name() const { return name_; }
    bool isCurrent() const { return current_; }
    QToolButton* renameButton() const { return rename_; }
    QToolButton* exportButton() const { return export_; }
    TrashButton* deleteButton() const { return delete_; }
    QLabel* descriptionLabel() const { return description_; }
    void retranslateUi();

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void applyClicked(const QString& name);
    void renameClicked(const QString& name);
    void exportClicked(const QString& name);
    void deleteClicked(const QString& name);

private:
    void setHighlighted(bool on);

    QString name_;
    bool current_;
    QLabel* title_ = nullptr;
    QLabel* description_ = nullptr;
    QLabel* date_ = nullptr;
    QLabel* mark_ = nullptr;
    QToolButton* rename_ = nullptr;
    QToolButton* export_ = nullptr;
    TrashButton* delete_ = nullptr;
};

} // namespace Lumora
