#pragma once

/// Gives tooltips the theme's colours and a small text, from now on and whenever the desktop changes its
/// colours: the toolkit's own are yellow where no desktop has given it others. Called once. Main thread.
void dressToolTips();
