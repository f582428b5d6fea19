#pragma once

#include "AppDelegate.h"
#include "ApplicationInstance.h"
#include "PlatformWording.h"
#include "TerminationSignals.h"

#include <QApplication>

/// The program: prepares the process, makes the one application delegate and runs the main loop.
class DeskbroomApp final {
public:
    DeskbroomApp(int &argc, char **argv);

    /// Runs until the user quits, a signal asks for it, or an earlier instance has taken over. Answers the
    /// exit status.
    [[nodiscard]] int run();

private:
    /// What must be settled before the application object exists and any thread starts.
    struct ProcessPreparation {
        ProcessPreparation();
    };

    void claimed(ApplicationInstance::Role role);

    ProcessPreparation m_preparation;
    QApplication m_application;
    TerminationSignals m_terminationSignals;
    ApplicationInstance m_instance;
    PlatformWording m_wording;
    AppDelegate m_appDelegate;
};
