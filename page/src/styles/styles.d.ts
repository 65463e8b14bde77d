/** Style sheets are imported for the bundle to have them. */
declare module "*.css";
