// Doc.exe and Url.exe: one program under two names. Started by the launcher in the data
// folder with one key, it opens with the shell what setup.ini names for the key:
//   Doc.exe README|TSGUIDE|LICENSE   a document of [Documents], relative to the data folder
//                                    (a text document nothing is registered for opens in
//                                    Notepad)
//   Url.exe HOMEPAGE                 an address of [Links]
// A key that setup.ini does not name, or a document that is missing, is reported in a
// message box; the exit code is then 1.
#include "product/demo/demo_Common.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int)
{
    std::string folder = demo::OwnFolder();
    bool url = _stricmp(demo::OwnName().c_str(), "Url.exe") == 0;
    std::string key = demo::Arguments();
    while (!key.empty() && key.back() == ' ')
        key.pop_back();
    std::string product = demo::SetupValue({folder}, "Registry", "Product", "Tarn");
    std::string target =
        key.empty() ? "" : demo::SetupValue({folder}, url ? "Links" : "Documents", key.c_str(), "");
    if (target.empty())
    {
        std::string text = std::string(url ? "No web address" : "No document") +
                           " is known by the name [" + key + "].";
        MessageBoxA(nullptr, text.c_str(), product.c_str(), MB_OK | MB_ICONEXCLAMATION);
        return 1;
    }
    if (!url) target = folder + "\\" + target;
    if (!url && GetFileAttributesA(target.c_str()) == INVALID_FILE_ATTRIBUTES)
    {
        std::string text = "The document " + target + " is missing.";
        MessageBoxA(nullptr, text.c_str(), product.c_str(), MB_OK | MB_ICONEXCLAMATION);
        return 1;
    }
    SHELLEXECUTEINFOA info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI;
    info.lpVerb = "open";
    info.lpFile = target.c_str();
    info.lpDirectory = folder.c_str();
    info.nShow = SW_SHOWNORMAL;
    bool opened = ShellExecuteExA(&info) != 0;
    size_t dot = target.find_last_of('.');
    if (!opened && !url && dot != std::string::npos && _stricmp(target.c_str() + dot, ".txt") == 0)
    {
        std::string quoted = "\"" + target + "\"";
        info.lpFile = "notepad.exe";
        info.lpParameters = quoted.c_str();
        opened = ShellExecuteExA(&info) != 0;
    }
    if (!opened)
    {
        std::string text = "Nothing on this computer can open " + target + ".";
        MessageBoxA(nullptr, text.c_str(), product.c_str(), MB_OK | MB_ICONEXCLAMATION);
        return 1;
    }
    return 0;
}
