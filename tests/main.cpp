// Test runner: wxWidgets initialised once for every test.
#include <gtest/gtest.h>
#include <wx/init.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    wxInitializer wx;
    if (!wx.IsOk())
    {
        fprintf(stderr, "cannot initialise wxWidgets\n");
        return 1;
    }
    return RUN_ALL_TESTS();
}
