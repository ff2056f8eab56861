#include "ui/preferences/preferences_view.h"

#include <QTabWidget>
#include <QVBoxLayout>

#include "ui/look/close_keys.h"
#include "ui/look/symbols.h"
#include "ui/preferences/files_tab_view.h"
#include "ui/preferences/general_tab_view.h"
#include "ui/preferences/output_tab_view.h"

namespace sorvik {
namespace {

constexpr QSize windowSize(580, 480);
constexpr int padding = 20;

}  // namespace

PreferencesView::PreferencesView(AppSettings& settings, QWidget* parent) : QWidget(parent, Qt::Dialog) {
    setObjectName(QStringLiteral("preferencesWindow"));
    setWindowTitle(QStringLiteral("Preferences"));
    setFixedSize(windowSize);
    auto* tabs = new QTabWidget;
    tabs->setObjectName(QStringLiteral("preferencesTabs"));
    tabs->setDocumentMode(true);
    tabs->addTab(new GeneralTabView(settings), symbolIcon(Symbol::general), QStringLiteral("General"));
    tabs->addTab(new FilesTabView(settings), symbolIcon(Symbol::files), QStringLiteral("Files"));
    tabs->addTab(new OutputTabView(settings), symbolIcon(Symbol::output), QStringLiteral("Output"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->addWidget(tabs);
    closeByKeys(*this);
}

}  // namespace sorvik
