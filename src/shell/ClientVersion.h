#pragma once

// The terminal's own version, 1.02 (build 8): the windows and the About box show it, --version
// prints it, and a host's version check reads it (as 1.2). It is set here and only here, and
// moves with what the terminal does towards a host, not with the package (PackageVersion.h).
namespace corvane {
inline constexpr int ClientMajor = 1;
inline constexpr int ClientMinor = 2;
inline constexpr int ClientBuild = 8;
} // namespace corvane
