// The names of the launcher's environment values, each written once: a misspelt name in
// the code would otherwise read silently as "[Undefined]". Names are case-insensitive.
// (An assertion keeps its names as written: its box shows the condition's text.)
#pragma once

namespace lfx_env
{
inline constexpr char DataDir[] = "DataDir";
inline constexpr char LauncherDir[] = "LauncherDir";
inline constexpr char InstallDir[] = "InstallDir";
inline constexpr char SourceDir[] = "SourceDir";
inline constexpr char RegistryFolder[] = "RegistryFolder";
inline constexpr char IniPath[] = "IniPath";
inline constexpr char ProductDir[] = "ProductDir";
inline constexpr char LauncherName[] = "LauncherName";
inline constexpr char ProductName[] = "ProductName";
inline constexpr char ProductExe[] = "ProductExe";
inline constexpr char ModuleFileName[] = "ModuleFileName";
inline constexpr char Language[] = "Language";
inline constexpr char Debug[] = "Debug";
inline constexpr char Anchor[] = "Anchor";
inline constexpr char MediaName[] = "MediaName";
inline constexpr char DirectXVersion[] = "DirectXVersion";
inline constexpr char DirectXUrl[] = "DirectXUrl";
inline constexpr char CharacterSet[] = "CharacterSet";
} // namespace lfx_env
