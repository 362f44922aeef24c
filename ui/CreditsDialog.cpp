#include "ui/CreditsDialog.h"

#include "LumoraVersion.h"
#include "ui/Theme.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

namespace Lumora {

CreditsDialog::CreditsDialog(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("Tindra ") + tr("Credits"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setMinimumWidth(300);
    setStyleSheet(themed(QStringLiteral("QDialog { background: {white}; }")));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 12);
    layout->setSpacing(4);
    struct Section {
        QString heading;
        QString names;
    };
    const Section sections[] = {
        {tr("Planning & Development"), tr("The Lumora team")},
        {tr("Illustration"), tr("The Lumora team (Tindra, the sky and the stars)")},
        {tr("Special Thanks"), tr("Everyone who tried the diagnosis and told us how it felt") +
                                   QStringLiteral("\n") +
                                   tr("Klee One font: Fontworks (SIL Open Font License 1.1)")},
    };
    for (const Section& section : sections) {
        auto* heading = new QLabel(section.heading, this);
        heading->setStyleSheet(themed(QStringLiteral(
            "QLabel { color: {tealInk}; font-size: 10pt; font-weight: bold; padding-top: 8px; }")));
        auto* names = new QLabel(section.names, this);
        names->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 10pt; }")));
        names->setWordWrap(true);
        layout->addWidget(heading);
        layout->addWidget(names);
    }
    auto* version = new QLabel(QStringLiteral("Lumora ") + QString::fromLatin1(kVersion), this);
    version->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 9pt; }")));
    layout->addSpacing(6);
    layout->addWidget(version);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    layout->addSpacing(10);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
}

} // namespace Lumora
