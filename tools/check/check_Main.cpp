// ProductCheck: checks a product folder before it ships, as the launcher will see it.
//
//   ProductCheck PRODUCT_FOLDER [DATA_FOLDER_NAME]
//
// PRODUCT_FOLDER holds the launcher; DATA_FOLDER_NAME is its data folder's name in it
// ("Install" unless the launcher is started with the switch ANCHOR). Every problem is one
// line: the file, its line when there is one, what is wrong and what the launcher would do.
// Exit codes: 0 no problem, 1 problems were found, 2 the command line is wrong or the
// product folder is not there.
#include "check_Files.h"
#include "check_Product.h"

#include <windows.h>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3)
    {
        fprintf(stderr, "usage: ProductCheck PRODUCT_FOLDER [DATA_FOLDER_NAME]\n");
        return 2;
    }
    char full[MAX_PATH] = {};
    DWORD length = GetFullPathNameA(argv[1], MAX_PATH, full, nullptr);
    if (length == 0 || length >= MAX_PATH || !IsFolder(full))
    {
        fprintf(stderr, "ProductCheck: %s is not a folder\n", argv[1]);
        return 2;
    }
    ProductFolder folder{full, argc == 3 ? argv[2] : "Install"};
    // A trailing backslash would double at the seam of every name.
    if (folder.productDir.size() > 3 && folder.productDir.back() == '\\')
        folder.productDir.pop_back();
    // A library that fails to load must not stop the check with a box of the system's.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    CheckReport report = CheckProduct(folder);
    for (const std::string& line : report.Lines())
        printf("%s\n", line.c_str());
    if (report.Clean())
        printf("No problems found in %s.\n", folder.productDir.c_str());
    else
        printf("%zu problem%s found in %s.\n", report.Lines().size(),
               report.Lines().size() == 1 ? "" : "s", folder.productDir.c_str());
    return report.Clean() ? 0 : 1;
}
