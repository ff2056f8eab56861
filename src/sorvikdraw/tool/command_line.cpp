namespace sorvik::draw {}
