#pragma once

namespace tessel::qt {

/// Lets Qt find the readers of the commonest images alone: asked for any format, it loads all that it finds. Before
/// anything is read.
void findCommonPluginsOnly();

/// Lets it find all that are installed.
void findAllPlugins();

/// Makes the application that fonts and painting need, once; pictures of pixels do without, and it takes a third of the
/// program's start.
void needFonts();

} // namespace tessel::qt
