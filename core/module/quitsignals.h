#pragma once

/// Lets the process end like a closed window when the system asks it to (SIGINT, SIGTERM, SIGHUP on Unix), so
/// that a running take is saved. A signal that the process was started to ignore stays ignored. Once, after
/// the application object exists.
void quitOnSystemSignals();
