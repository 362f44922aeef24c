#pragma once

#include "settings/AppSettings.h"

#include "ui/PresetNamePrompt.h"

#include <QWidget>

#include <functional>
#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace Lumora {

class PresetRow;
class SettingsStore;

// What the three presets pages share: a title row with import and export, a
// scrolling list of preset cards (name, description, date), apply by one
// click, rename by saving under a new name, delete after a confirmation. The
// list is read from the settings store afresh on refresh() and after every
// change; the pages differ only in which list they show and what "apply" does.
class PresetListPanel : public QWidget {
    Q_OBJECT
public:
    PresetListPanel(QWidget* parent, SettingsStore* store);

    void setStore(SettingsStore* store);
    SettingsStore* store() const { return store_; }
    void setNamePrompt(NamePrompt prompt) { prompt_ = std::move(prompt); }

    // Reads the list from the store and rebuilds the cards.
    void refresh();
    virtual void retranslateUi();

    int rowCount() const { return static_cast<int>(rows_.size()); }
    PresetRow* row(int index) const;
    PresetRow* rowNamed(const QString& name) const;
    QStringList names() const;

    // The actions behind the cards' buttons, without their dialogs except
    // where said; each returns whether it did what it says.
    bool applyPreset(const QString& name);
    // Asks for the new name (the rename dialog), then renames.
    bool renameWithPrompt(const QString& name);
    bool renamePreset(const QString& from, const QString& to);
    // Asks "Delete the preset ...?" and deletes on OK.
    bool deleteWithConfirmation(const QString& name);
    bool deletePreset(const QString& name);
    // Presets of this page's kind from a file in the preset-file format
    // (lumora-cli presets export); replaces presets of the same name.
    bool importFromFile(const QString& path, QString* error = nullptr);
    // One preset into a preset file.
    bool exportToFile(const QString& name, const QString& path, QString* error = nullptr);

    QPushButton* importButton() const { return import_; }
    QLabel* titleLabel() const { return title_; }
    QVBoxLayout* extraLayout() const { return extra_; }

signals:
    void listChanged();

protected:
    struct Entry {
        QString name;
        QString description;
        QString savedAt;
        bool current = false;
    };
    virtual QString pageTitle() const = 0;
    virtual QString emptyText() const = 0;
    virtual bool supportsFiles() const { return true; }
    // The question asked before deleting.
    virtual QString deleteQuestion(const QString& name) const;
    virtual std::vector<Entry> entriesOf(const AppSettings& settings) const = 0;
    virtual bool exists(const AppSettings& settings, const std::string& name) const = 0;
    // The store operations of this kind.
    virtual bool applyNamed(const AppSettings& settings, const std::string& name) = 0;
    // One transaction: the preset takes the new name and whatever names it (key
    // slots, the last preset) follows.
    virtual bool renameNamed(const std::string& from, const std::string& to) = 0;
    virtual bool eraseNamed(const std::string& name) = 0;
    // Files: how many presets of this kind were put into `settings`.
    virtual int importInto(AppSettings& settings, const std::string& text, std::string& error) {
        (void)settings;
        (void)text;
        error = "not supported";
        return 0;
    }
    virtual bool exportNamed(const AppSettings& settings, const std::string& name,
                             std::string& text) const {
        (void)settings;
        (void)name;
        (void)text;
        return false;
    }

    bool askName(const QString& title, QString& name);

private:
    void chooseImportFile();
    void chooseExportFile(const QString& name);

    SettingsStore* store_ = nullptr;
    NamePrompt prompt_;
    QLabel* title_ = nullptr;
    QPushButton* import_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QWidget* listHost_ = nullptr;
    QVBoxLayout* list_ = nullptr;
    QVBoxLayout* extra_ = nullptr;
    QLabel* empty_ = nullptr;
    std::vector<PresetRow*> rows_;
};

} // namespace Lumora
