#pragma once

#include <QDir>
#include <QString>

#include <functional>

class CTableViewCAN;
class GUI_CanDeviceParam;
class GUI_CanView;
class QFileDialog;
class QLineEdit;
class QWidget;

/// Drives the main window as a user would, step by step, and keeps a screenshot of each step.
class Tour
{
public:
    enum class Adapter {
        Virtual, ///< with the built-in buses
        Can, ///< has no LIN; somebody sends 101 a hundred times a second on channel 0, and FD frames, and on channel 1
    };
    /// Files are named after language and written to folder.
    Tour(GUI_CanView &window, QString language, const QDir &folder, Adapter adapter = Adapter::Virtual);

    /// Runs all steps; false, with a line on standard error, at the first one that does not come about.
    bool run();

private:
    bool openChannels();
    bool computeFilter(const GUI_CanDeviceParam &dialog);
    bool scan(const GUI_CanDeviceParam &dialog);
    bool receive();
    bool send();
    bool sendRepeatedly();
    bool sendList();
    bool filterGateway();
    bool editData();
    bool refuseIdentifier();
    bool closeMessage();
    bool hideIdentifier();
    bool saveCaptures();
    static bool isHiddenIn(const QString &path);
    bool playCapture();
    bool saveInRealTime();
    bool useLIN();
    bool refuseLIN();
    void chooseLIN();
    bool openLIN();
    bool runSchedule();
    bool monitorLIN();
    bool developLIN();
    bool closeChannels();
    bool lookAround();
    bool switchLanguage();

    static bool waitUntil(const char *what, const std::function<bool()> &condition);
    QWidget *tab() const;
    CTableViewCAN *table() const;
    template<typename Widget>
    Widget *widget(const char *name) const;
    void click(const char *name) const;
    static void pressIn(const QWidget &parent, const char *name);
    void type(const char *name, const QString &text) const;
    static void typeIn(const QWidget &parent, const char *name, const QString &text);
    static void type(QLineEdit *field, const QString &text);
    void shoot(QWidget &target, const QString &name);
    QString file(const QString &name) const;

    GUI_CanView &m_window;
    QString m_language;
    QDir m_folder;
    Adapter m_adapter;
    int m_shots = 0;
};
