// Shows the login page in the theme that was last used here.
document.documentElement.dataset.theme = localStorage.getItem('navora.theme') || 'system';
