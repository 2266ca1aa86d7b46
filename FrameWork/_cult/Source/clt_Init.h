// The order in which the program's static singletons are constructed.
//
// Every long-lived object is a static whose construction order matters: the product
// launcher and the pages register with the launcher core before its constructor runs,
// and the debugger trace sink must replace the early TraceWin sink last. The order is
// fixed with the compiler's init_priority (smaller runs first, destruction is reverse),
// so it holds across translation units and does not depend on link order.
#pragma once

#define CLT_INIT_LIBRARY_SEARCH 1000   // libraries looked for in the system folder only
#define CLT_INIT_DISPLAY_LIST 1100     // head of the display-device list
#define CLT_INIT_PRODUCT_LAUNCHER 1200 // the product launcher (registers itself)
#define CLT_INIT_PAGES 1300            // the product pages, in registration order
#define CLT_INIT_FRAMEWORK 1400        // CltState and the other framework statics
#define CLT_INIT_GRAPHICS 1500         // blitter choice, the component registry
#define CLT_INIT_COMPONENTS 1510       // components, registered in this order:
#define CLT_INIT_FILE_STREAM 1511      //   file stream
#define CLT_INIT_MEMORY_BLOCK 1512     //   memory block
#define CLT_INIT_BMP_READER 1513       //   BMP reader (listed first among readers)
#define CLT_INIT_TGA_READER 1514       //   TGA reader
#define CLT_INIT_LAUNCHER_CORE 1600    // LfxMain
#define CLT_INIT_ENVIRONMENT 1700      // g_Env
#define CLT_INIT_DEBUGGER_SINK 1800    // the debugger trace sink, current from then on

#define CLT_STATIC(step) __attribute__((init_priority(step)))
