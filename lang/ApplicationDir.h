#pragma once

/// @file
/// Where the deployment lies.

#include <QString>

/// The folder that holds the folder Lang: the one of the host's executable, with forward slashes
/// and none at the end. A function of its own, so that langcheck can look at any other folder.
QString applicationDir();
