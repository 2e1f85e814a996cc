// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QProcess>

class QLabel;

/// What this is: version, licence, and the libraries in use, with the versions of those that read
/// files as soon as the program that uses them has told. Deletes itself when closed.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    /// helper: path of the program that reads metadata.
    AboutDialog(const QString &helper, QWidget *window);
    ~AboutDialog() override;

    /// Versions of Tavrin, its libraries and the system, a line each, for reports of faults.
    QString details() const;

private:
    void askFor(const QString &helper);
    void showLibraries();

    QStringList m_readers; ///< with their versions, once known
    QLabel *m_libraries;
    QProcess m_helper;
};
