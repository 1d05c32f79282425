#include "Classes/ACTIVITY_LOGS/LogFolderChooser.h"

#include "Utility/Language/ActivityLogsVC.h"
#include "Utility/Language/AlertPanel.h"

#include <QDir>
#include <QFileDialog>

using namespace Qt::StringLiterals;

void chooseLogFolder(QWidget *parent, const QString &start, std::function<void(const QString &)> chosen)
{
    auto *dialog = new QFileDialog(parent, ActivityLogsVC::archiveCleanupMenu,
                                   QDir(start).exists() ? start : QDir::homePath());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    // The desktop's own would not speak the program's language.
    dialog->setOptions(QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog |
                       QFileDialog::DontUseCustomDirectoryIcons);
    dialog->setLabelText(QFileDialog::LookIn, ActivityLogsVC::lookIn);
    dialog->setLabelText(QFileDialog::FileName, ActivityLogsVC::folderName);
    dialog->setLabelText(QFileDialog::FileType, ActivityLogsVC::fileType);
    dialog->setLabelText(QFileDialog::Accept, AlertPanel::okButton);
    dialog->setLabelText(QFileDialog::Reject, ActivityLogsVC::cancel);
    QObject::connect(dialog, &QFileDialog::fileSelected, parent,
                     [chosen = std::move(chosen)](const QString &folder) { chosen(folder); });
    dialog->open();
}
