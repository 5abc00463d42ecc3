#pragma once

/// Lets the process end like a closed window when the system asks it to (SIGINT, SIGTERM, SIGHUP on Unix), so
/// that a running take is saved. Once, after the application object exists.
void quitOnSystemSignals();
