#pragma once

#include <QWidget>

class DriveSettings;
class PropertyRows;

// The editor of how the machine is supplied in an analysis: only the value of the
// selected input method is shown, and the duty cycle only for a trapezoidal current.
class DriveSettingsWidget : public QWidget
{
    Q_OBJECT
public:
    explicit DriveSettingsWidget(DriveSettings *drive, QWidget *parent = nullptr);

private:
    void updateUI();

    DriveSettings *m_drive;
    PropertyRows *m_rows;
};
