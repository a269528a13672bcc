#pragma once

/// @file
/// The location of the deployment.

#include <QString>

/// Returns the folder that contains Lang, with forward slashes and none at the end: the folder of
/// the host's executable. Programs such as langcheck define this function to return another folder.
QString applicationDir();
