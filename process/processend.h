#pragma once

/// To be returned last from a window's main(), when nothing of the program lives any more: gives the status
/// back, but on Windows ends the process with it at once and does not return.
///
/// Windows would first end every other thread wherever it stands and then take the libraries down. A library
/// that then wants a lock of an ended thread waits for ever, and the process stays without a window.
[[nodiscard]] int endProcess(int status);
