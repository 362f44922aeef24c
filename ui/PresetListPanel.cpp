#include "ui/PresetListPanel.h"

#include "settings/SettingsStore.h"
#include "ui/PhraseBreaks.h"
#include "ui/PresetNamePrompt.h"
#include "ui/PresetRow.h"
#include "ui/SaveFailure.h"
#include "ui/Theme.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QVBoxLayout>

namespace Lumora {

namespace {

const char kHeaderButton[] =
    "QPushButton { background: {blue@30}; color: {deepBlueInk}; border-radius: 6px;"
    " padding: 3px 10px; font-size: 8pt; font-weight: bold; border: 1px solid"
    " {blue@120}; }QPushButton:hover { background: {blue@70}; }";

} // namespace

PresetListPanel::PresetListPanel(QWidget* parent, SettingsStore* store)
    : QWidget(parent), store_(store) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 6);
    layout->setSpacing(8);

    auto* header = new QHBoxLayout();
    title_ = new QLabel(this);
    title_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 11pt;"
                                                " font-weight: bold; background: transparent; }")));
    header->addWidget(title_, 1);
    import_ = new QPushButton(this);
    import_->setStyleSheet(themed(QLatin1String(kHeaderButton)));
    import_->setCursor(Qt::PointingHandCursor);
    header->addWidget(import_);
    layout->addLayout(header);
    connect(import_, &QPushButton::clicked, this, &PresetListPanel::chooseImportFile);

    scroll_ = new QScrollArea(this);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidgetResizable(true);
    scroll_->setStyleSheet(Styles::scrollArea());
    scroll_->viewport()->setAutoFillBackground(false);
    listHost_ = new QWidget(scroll_);
    listHost_->setAttribute(Qt::WA_TranslucentBackground);
    auto* hostLayout = new QVBoxLayout(listHost_);
    hostLayout->setContentsMargins(0, 0, 8, 0);
    hostLayout->setSpacing(6);
    list_ = new QVBoxLayout();
    list_->setSpacing(6);
    hostLayout->addLayout(list_);
    empty_ = new QLabel(listHost_);
    empty_->setWordWrap(true);
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {lilac}; font-size: 9pt; padding: 16px;"
                              " background: {white@200};"
                              " border-radius: 12px; }")));
    hostLayout->addWidget(empty_);
    extra_ = new QVBoxLayout();
    extra_->setSpacing(6);
    hostLayout->addLayout(extra_);
    hostLayout->addStretch(1);
    scroll_->setWidget(listHost_);
    layout->addWidget(scroll_, 1);
}

void PresetListPanel::setStore(SettingsStore* store) {
    store_ = store;
    refresh();
}

PresetRow* PresetListPanel::row(int index) const {
    if (index < 0 || index >= rowCount()) {
        return nullptr;
    }
    return rows_[static_cast<size_t>(index)];
}

PresetRow* PresetListPanel::rowNamed(const QString& name) const {
    for (PresetRow* r : rows_) {
        if (r->name() == name) {
            return r;
        }
    }
    return nullptr;
}

QStringList PresetListPanel::names() const {
    QStringList out;
    for (PresetRow* r : rows_) {
        out << r->name();
    }
    return out;
}

void PresetListPanel::refresh() {
    for (PresetRow* r : rows_) {
        list_->removeWidget(r);
        r->hide();
        r->deleteLater();
    }
    rows_.clear();
    std::vector<Entry> entries;
    if (store_) {
        entries = entriesOf(store_->load());
    }
    const bool files = supportsFiles();
    for (const Entry& e : entries) {
        auto* r = new PresetRow(listHost_, e.name, e.description, e.savedAt, e.current, files);
        list_->addWidget(r);
        rows_.push_back(r);
        connect(r, &PresetRow::applyClicked, this, &PresetListPanel::applyPreset);
        connect(r, &PresetRow::renameClicked, this, &PresetListPanel::renameWithPrompt);
        connect(r, &PresetRow::exportClicked, this, &PresetListPanel::chooseExportFile);
        connect(r, &PresetRow::deleteClicked, this, &PresetListPanel::deleteWithConfirmation);
    }
    empty_->setVisible(rows_.empty());
    import_->setVisible(files);
    import_->setEnabled(store_ != nullptr);
}

void PresetListPanel::retranslateUi() {
    title_->setText(pageTitle());
    empty_->setText(keepPhrases(emptyText()));
    import_->setText(QStringLiteral("📥 ") + tr("Import"));
    import_->setToolTip(tr("Add presets from a preset file (.json)"));
    for (PresetRow* r : rows_) {
        r->retranslateUi();
    }
}

bool PresetListPanel::applyPreset(const QString& name) {
    if (!store_) {
        return false;
    }
    const AppSettings s = store_->load();
    const std::string key = name.toStdString();
    if (!exists(s, key)) {
        refresh();
        return false;
    }
    const bool ok = applyNamed(s, key);
    refresh();
    return ok;
}

bool PresetListPanel::askName(const QString& title, QString& name) {
    const QString label = tr("Enter a preset name:");
    return prompt_ ? prompt_(title, label, name) : promptForPresetName(this, title, label, name);
}

bool PresetListPanel::renameWithPrompt(const QString& name) {
    QString to = name;
    if (!askName(tr("Rename preset"), to) || to.trimmed().isEmpty() || to == name) {
        return false;
    }
    to = to.trimmed();
    if (store_ && exists(store_->load(), to.toStdString())) {
        const auto answer =
            QMessageBox::question(this, tr("Rename preset"),
                                  tr("A preset named \"%1\" already exists. Replace it?").arg(to),
                                  QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer != QMessageBox::Ok) {
            return false;
        }
    }
    return renamePreset(name, to);
}

bool PresetListPanel::renamePreset(const QString& from, const QString& to) {
    if (!store_ || from == to || to.trimmed().isEmpty()) {
        return false;
    }
    const bool ok = renameNamed(from.toStdString(), to.toStdString());
    refresh();
    if (ok) {
        emit listChanged();
    }
    return ok;
}

QString PresetListPanel::deleteQuestion(const QString& name) const {
    return tr("Delete the preset \"%1\"?").arg(name);
}

bool PresetListPanel::deleteWithConfirmation(const QString& name) {
    QMessageBox box(QMessageBox::Question, tr("Delete preset"), deleteQuestion(name),
                    QMessageBox::Ok | QMessageBox::Cancel, this);
    box.setDefaultButton(QMessageBox::Cancel);
    if (box.exec() != QMessageBox::Ok) {
        return false;
    }
    return deletePreset(name);
}

bool PresetListPanel::deletePreset(const QString& name) {
    if (!store_) {
        return false;
    }
    const bool ok = eraseNamed(name.toStdString());
    refresh();
    if (ok) {
        emit listChanged();
    }
    return ok;
}

bool PresetListPanel::importFromFile(const QString& path, QString* error) {
    auto fail = [error](const QString& why) {
        if (error) {
            *error = why;
        }
        return false;
    };
    if (!store_) {
        return fail(tr("No settings folder"));
    }
    const std::optional<std::string> text = store_->readFile(path.toStdString());
    if (!text) {
        return fail(tr("The file cannot be read."));
    }
    AppSettings s = store_->load();
    std::string why;
    const int count = importInto(s, *text, why);
    if (count < 0) {
        return fail(QString::fromStdString(why));
    }
    if (count == 0) {
        return fail(tr("The file holds no presets of this kind."));
    }
    if (!store_->save(s)) {
        return fail(saveFailureText(store_, tr("The settings could not be saved.")));
    }
    refresh();
    emit listChanged();
    return true;
}

bool PresetListPanel::exportToFile(const QString& name, const QString& path, QString* error) {
    std::string text;
    if (!store_ || !exportNamed(store_->load(), name.toStdString(), text)) {
        if (error) {
            *error = tr("No preset named \"%1\".").arg(name);
        }
        return false;
    }
    if (!store_->writeFile(path.toStdString(), text)) {
        if (error) {
            *error = tr("The file cannot be written.");
        }
        return false;
    }
    return true;
}

void PresetListPanel::chooseImportFile() {
    const QString path = QFileDialog::getOpenFileName(this, tr("Import presets"), QString(),
                                                      tr("Preset files (*.json);;All files (*)"));
    if (path.isEmpty()) {
        return;
    }
    QString error;
    if (!importFromFile(path, &error)) {
        QMessageBox::warning(this, tr("Import presets"), error);
    }
}

void PresetListPanel::chooseExportFile(const QString& name) {
    QString suggested = name;
    suggested.replace(QRegularExpression(QStringLiteral("[\\\\/:*?\"<>|]")), QStringLiteral("_"));
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Export preset"), suggested + QStringLiteral(".json"),
                                     tr("Preset files (*.json)"));
    if (path.isEmpty()) {
        return;
    }
    QString error;
    if (!exportToFile(name, path, &error)) {
        QMessageBox::warning(this, tr("Export preset"), error);
    }
}

} // namespace Lumora
