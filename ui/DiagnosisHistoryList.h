#pragma once

#include <QWidget>

class QGridLayout;
class QLabel;
class QVBoxLayout;

namespace Lumora {

class SettingsStore;
struct DiagnosisHistoryEntry;

// The past diagnoses, newest first (at most 20 are kept): when, with which
// microphone, the overall verdict, the six verdicts, and whether the
// recommended settings were applied. Read from the settings store.
class DiagnosisHistoryList : public QWidget {
    Q_OBJECT
public:
    DiagnosisHistoryList(QWidget* parent, SettingsStore* store);

    void setStore(SettingsStore* store);
    void refresh();
    void retranslateUi();
    int entryCount() const { return entries_; }

    static QString micTypeName(int micType);
    // "✅", "⚠️" or "❌" for a verdict level.
    static QString levelIcon(int level);

private:
    QWidget* makeCard(const DiagnosisHistoryEntry& entry);

    SettingsStore* store_ = nullptr;
    QLabel* title_ = nullptr;
    QLabel* empty_ = nullptr;
    QVBoxLayout* cards_ = nullptr;
    int entries_ = 0;
};

} // namespace Lumora
